// The settings, and the words of a call.

#include "cli/CommandLine.h"
#include "engine/PrivacyModeSettings.h"
#include "tests/fuzz/Fuzzing.h"

#include <QJsonObject>

using namespace Qt::StringLiterals;
using namespace kestrin;
using namespace kestrin::foundation;
using namespace kestrin::engine;
using namespace kestrin::cli;
using namespace kestrin::fuzzing;

namespace {

void checkSettings(const QByteArray &text) {
    const auto settings = decodeJson<PrivacyModeSettings>(text);
    if (!settings)
        return;
    require(decodeJson<PrivacyModeSettings>(encodeJson(*settings)) == settings,
            "what is written reads as it was");
    if (const auto document = secondOpinion(text))
        require(document->object().contains(u"isEnabled"_s) || document->object().isEmpty(),
                "nothing that is missing is made up");
}

void checkCall(const QByteArray &text) {
    const auto call = parseCommandLine(QString::fromUtf8(text).split(u'\n'));
    if (const auto *wrong = std::get_if<UsageError>(&call)) {
        require(wrong->sentence.endsWith(u'.'), "what is wrong is told in a sentence");
        return;
    }
    const auto &invocation = std::get<Invocation>(call);
    if (invocation.action != Invocation::Action::run)
        return;
    require(invocation.command != nullptr && invocation.limit >= 0, "a call that is carried out is complete");
    const bool selects =
        invocation.command->command == Command::protect || invocation.command->command == Command::unprotect;
    require(!selects || !invocation.ids.isEmpty(), "a selection names something");
}

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
    const QByteArray input = bytesOf(data, size);
    checkSettings(input);
    checkCall(input);
    return 0;
}
