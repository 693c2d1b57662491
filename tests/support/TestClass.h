// A program has the tests of a folder, because most of the work is in reading the headers of Qt. Each call
// runs one class of them, named after its source: system_tests tst_desktops [what Qt Test takes]
#pragma once

#include <QFileInfo>
#include <QTest>

#include <map>
#include <memory>

namespace kestrin::samples {

using MakeTests = std::unique_ptr<QObject> (*)();

/// The classes of tests that this program has, by their names.
inline std::map<QString, MakeTests> &testClasses() {
    static std::map<QString, MakeTests> known;
    return known;
}

} // namespace kestrin::samples

/// Below a class of tests, one a source.
#define KESTRIN_TEST(Class)                                                                                  \
    static const auto known##Class = kestrin::samples::testClasses().emplace(                                \
        QFileInfo(QStringLiteral(__FILE__)).baseName(),                                                      \
        []() -> std::unique_ptr<QObject> { return std::make_unique<Class>(); });
