// A whole run of "kestrinctl check" against one of wmctrl, which lists the same windows, and with many
// applications of the user's own against one with none.

#include "benchmarks/Bench.h"
#include "benchmarks/Child.h"
#include "benchmarks/Run.h"
#include "benchmarks/SampleOwnApplications.h"
#include "benchmarks/SampleWindows.h"

#include <QCoreApplication>
#include <QDir>

using namespace Qt::StringLiterals;
using namespace kestrin;

namespace {

constexpr int manyOwn = 1000;

/// A check whose files are in a folder of that name.
void checkIn(const QString &data) {
    qputenv("XDG_DATA_HOME", data.toLocal8Bit());
    bench::run({bench::built("cli/kestrinctl"), "check"});
}

/// Both take turns beside so many windows that nobody knows.
template <typename Work, typename Floor>
bench::Comparison compareBeside(int windows, int rounds, Work &&work, Floor &&floor) {
    const auto applications = bench::openWindows(bench::unknownClasses(windows));
    return bench::compare(rounds, work, floor);
}

} // namespace

int main(int argc, char **argv) {
    const bench::Run run(argc, argv);
    const QCoreApplication application(argc, argv);
    const QString plain = QDir::homePath() + u"/plain"_s;
    const QString withOwn = QDir::homePath() + u"/with-own"_s;
    bench::storeOwnApplications(withOwn + u"/Kestrin"_s, manyOwn);
    const int rounds = run.choose(20, 100);
    const auto check = [&] { checkIn(plain); };

    bench::Report report;
    const auto besideWmctrl = compareBeside(30, rounds, check, [] { bench::run({"wmctrl", "-lp"}); });
    report.ratio("kestrinctl check beside 30 windows, whole process", "ms", besideWmctrl, 4);
    const auto besideNone = compareBeside(
        100, rounds, [&] { checkIn(withOwn); }, check);
    report.ratio("kestrinctl check with 1000 own applications", "ms", besideNone, 1.3);
    return report.exitCode();
}
