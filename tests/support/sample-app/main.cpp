#include "tests/support/sample-app/SampleApplication.h"

#include <cstdio>

using namespace kestrin::sample;

int main(int count, char **arguments) {
    const ParsedOptions parsed = parseOptions({arguments + 1, arguments + count});
    if (std::holds_alternative<Help>(parsed)) {
        std::fputs(helpText, stdout);
        return 0;
    }
    if (const auto *error = std::get_if<std::string>(&parsed)) {
        std::fprintf(stderr, "%s\n", error->c_str());
        return 2;
    }
    return SampleApplication(std::get<Options>(parsed)).run();
}
