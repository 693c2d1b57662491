#include "tests/support/TestClass.h"

#ifdef QT_GUI_LIB
#include <QGuiApplication>
#else
#include <QCoreApplication>
#endif

#include <cstdio>

namespace kestrin::samples {

TestClass *TestClass::s_first = nullptr;

TestClass::TestClass(const char *source, Make make) : m_name(source), m_make(make), m_next(s_first) {
    m_name.remove_prefix(m_name.rfind('/') + 1);
    m_name = m_name.substr(0, m_name.find('.'));
    s_first = this;
}

TestClass::Make TestClass::find(std::string_view name) {
    for (const TestClass *known = s_first; known; known = known->m_next) {
        if (known->m_name == name)
            return known->m_make;
    }
    return nullptr;
}

} // namespace kestrin::samples

int main(int argc, char **argv) {
    using kestrin::samples::TestClass;
    const TestClass::Make make = argc > 1 ? TestClass::find(argv[1]) : nullptr;
    if (!make) {
        std::fprintf(stderr, "usage: %s tst_NAME [ARGUMENT...]\n", argv[0]);
        return 2;
    }
    argv[1] = argv[0];
    --argc;
    ++argv;
#ifdef QT_GUI_LIB
    QGuiApplication application(argc, argv);
#else
    QCoreApplication application(argc, argv);
#endif
    return QTest::qExec(make().get(), argc, argv);
}
