// A program has the tests of a folder, because most of the work is in reading the headers of Qt. Each call
// runs one class of them, named after its source: system_tests tst_desktops [what Qt Test takes]
#pragma once

#include <QTest>

#include <memory>
#include <string_view>

namespace kestrin::samples {

/// A class of tests that its program knows.
class TestClass {
  public:
    using Make = std::unique_ptr<QObject> (*)();

    /// `source` is the path of its source.
    TestClass(const char *source, Make make);

    /// None where no source has that name.
    static Make find(std::string_view name);

  private:
    std::string_view m_name;
    Make m_make;
    TestClass *m_next;
    static TestClass *s_first;
};

} // namespace kestrin::samples

/// Below a class of tests, one a source.
#define KESTRIN_TEST(Class)                                                                                  \
    static const kestrin::samples::TestClass known##Class(                                                   \
        __FILE__, []() -> std::unique_ptr<QObject> { return std::make_unique<Class>(); });
