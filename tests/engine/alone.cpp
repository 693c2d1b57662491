// The whole engine, with nothing beside it but what it may stand on. That this can be linked is the test.

int main() {}
