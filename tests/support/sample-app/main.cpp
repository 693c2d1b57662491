#include "tests/support/sample-app/SampleApplication.h"

using namespace kestrin::sample;

int main(int count, char **arguments) {
    return SampleApplication(parseArguments({arguments + 1, arguments + count})).run();
}
