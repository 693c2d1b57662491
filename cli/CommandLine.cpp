#include "cli/CommandLine.h"

#include "foundation/TimePhrase.h"
#include "runtime/Pause.h"

#include <algorithm>
#include <limits>

using namespace Qt::StringLiterals;

namespace kestrin::cli {

namespace {

QString quoted(const QString &word) {
    return u'"' + word + u'"';
}

/// "a", "a and b", "a, b and c".
QString listed(const QStringList &words, const QString &lastJoin = u" and "_s) {
    if (words.size() < 2)
        return words.join(QString());
    return words.first(words.size() - 1).join(u", "_s) + lastJoin + words.last();
}

/// A user may have added hundreds.
QStringList shortened(const QStringList &ids) {
    constexpr qsizetype longEnough = 30;
    return ids.size() <= longEnough ? ids : ids.first(longEnough) + QStringList{u"others"_s};
}

/// A number of any size, cut to what a limit can hold; none when it is not made of digits.
std::optional<qsizetype> naturalNumber(const QString &text) {
    const auto isDigit = [](QChar c) { return c >= u'0' && c <= u'9'; };
    if (text.isEmpty() || !std::all_of(text.cbegin(), text.cend(), isDigit))
        return std::nullopt;
    bool fits = false;
    const qlonglong number = text.toLongLong(&fits);
    return fits ? qsizetype(number) : std::numeric_limits<qsizetype>::max();
}

/// Reads the words one by one and stops at the first that is wrong.
class Parser {
  public:
    Parser(const QStringList &words, const std::function<QStringList()> &ownIDs)
        : m_words(words)
        , m_ownIDs(ownIDs) {}

    std::variant<Invocation, UsageError> parse() {
        while (m_error.isEmpty() && m_next < m_words.size()) {
            const QString word = m_words.at(m_next++);
            if (m_onlyArguments || !word.startsWith(u'-') || word == u"-")
                takeWord(word);
            else if (word == u"--")
                m_onlyArguments = true;
            else
                m_options.append({word, takesValue(word) ? takeValue(word) : QString()});
        }
        if (m_error.isEmpty())
            settleProgram();
        if (m_error.isEmpty() && m_result.command)
            settleCommand();
        if (!m_error.isEmpty())
            return UsageError{m_error};
        return m_result;
    }

  private:
    struct Option {
        QString word;
        QString value;

        QString name() const { return word.section(u'=', 0, 0); }
    };

    void fail(const QString &sentence) {
        if (m_error.isEmpty())
            m_error = sentence;
    }

    void takeWord(const QString &word) {
        if (m_result.command)
            m_arguments.append(word);
        else if (const CommandDescription *command = findCommand(word))
            m_result.command = command;
        else
            fail(u"There is no command "_s + quoted(word) + u"; the commands are "_s +
                 listed(commandNames()) + u'.');
    }

    static bool takesValue(const QString &word) {
        static const QStringList names{u"--limit"_s,      u"--since"_s,  u"--until"_s,    u"--kind"_s,
                                       u"--app"_s,        u"--search"_s, u"--format"_s,   u"--running"_s,
                                       u"--identifier"_s, u"--alias"_s,  u"--category"_s, u"--action"_s};
        return names.contains(Option{word, {}}.name());
    }

    QString takeValue(const QString &word) {
        if (word.contains(u'='))
            return word.section(u'=', 1);
        return m_next < m_words.size() ? m_words.at(m_next++) : QString();
    }

    void settleProgram() {
        if (m_result.command)
            return;
        for (const Option &option : std::as_const(m_options)) {
            if (option.word == u"--help" || option.word == u"-h")
                m_result.action = Invocation::Action::help;
            else if (option.word == u"--version")
                m_result.action = Invocation::Action::version;
            else
                return fail(u"Without a command, "_s + quoted(option.word) +
                            u" is not accepted, only --help and --version are."_s);
        }
        if (m_options.isEmpty())
            fail(u"A command is missing; the commands are "_s + listed(commandNames()) +
                 u", and --help explains them."_s);
    }

    void settleCommand() {
        for (const Option &option : std::as_const(m_options))
            settleOption(option);
        // Who asks for help may have left out the rest.
        if (m_error.isEmpty() && m_result.action == Invocation::Action::run)
            settleArguments();
    }

    void settleOption(const Option &option) {
        const QStringList &own = m_result.command->options;
        if (option.word == u"--help" || option.word == u"-h")
            m_result.action = Invocation::Action::help;
        else if (option.word == u"--json" && own.contains(u"--json"_s))
            m_result.json = true;
        else if (option.word == u"--preview" && own.contains(u"--preview"_s))
            m_result.preview = true;
        else if (option.word == u"--follow" && own.contains(u"--follow"_s))
            m_result.follow = true;
        else if (m_result.command->command == Command::log && own.contains(option.name()))
            settleLogOption(option);
        else if (m_result.command->addOptions.contains(option.name()))
            settleAddOption(option);
        else
            fail(quoted(m_result.command->name) + u" does not accept "_s + quoted(option.word) +
                 (own.isEmpty() ? u"; its only option is "_s : u"; its options are "_s) +
                 listed(own + QStringList{u"--help"_s}) + u'.');
    }

    void settleLogOption(const Option &option) {
        const QString name = option.name();
        LogRequest &log = m_result.log;
        if (name == u"--limit")
            settleLimit(option.value);
        else if (name == u"--since")
            settleTime(option, log.since);
        else if (name == u"--until")
            settleTime(option, log.until);
        else if (name == u"--kind")
            settleRawValue(option, log.query.kinds.emplace_back());
        else if (name == u"--app")
            settleText(option, log.query.apps.emplace_back());
        else if (name == u"--search")
            settleText(option, log.query.text);
        else if (name == u"--format")
            settleRawValue(option, log.format);
        else if (option.word == u"--all")
            log.limit = std::numeric_limits<qsizetype>::max();
        else
            fail(name + u" accepts no value."_s);
    }

    void settleTime(const Option &option, QString &target) {
        if (!foundation::timeOfPhrase(option.value, QDateTime::currentDateTime()))
            fail(
                option.name() +
                u" accepts a date or a time, such as \"2026-11-25 19:04\", today, \"2 hours ago\" or -90min, not "_s +
                quoted(option.value) + u'.');
        target = option.value;
    }

    void settleText(const Option &option, QString &target) {
        if (option.value.isEmpty())
            fail(option.name() + u" needs a text behind it."_s);
        target = option.value;
    }

    void settleAddOption(const Option &option) {
        const QString name = option.name();
        engine::OwnApplication &application = m_result.application;
        if (m_arguments.isEmpty() || m_arguments.first() != u"add")
            return fail(quoted(m_result.command->name) + u" accepts "_s + name + u" only with add."_s);
        if (option.value.trimmed().isEmpty())
            return fail(name + u" needs a word behind it."_s);
        if (name == u"--running")
            m_result.running = option.value.trimmed();
        else if (name == u"--identifier")
            application.identifiers.append(option.value);
        else if (name == u"--alias")
            application.aliases.append(option.value);
        else if (name == u"--action")
            settleRawValue(option, application.action);
        else
            settleRawValue(option, application.categories.emplace_back());
    }

    template <typename Enumeration>
    void settleRawValue(const Option &option, Enumeration &target) {
        if (const auto value = foundation::fromRawValue<Enumeration>(option.value)) {
            target = *value;
            return;
        }
        QStringList accepted;
        for (const Enumeration value : foundation::allCases<Enumeration>())
            accepted.append(foundation::rawValue(value));
        fail(option.name() + u" accepts "_s + listed(accepted, u" or "_s) + u", not "_s +
             quoted(option.value) + u'.');
    }

    void settleLimit(const QString &value) {
        if (const auto limit = naturalNumber(value))
            m_result.log.limit = *limit;
        else
            fail(u"--limit accepts a whole number that is not negative, such as 20, not "_s + quoted(value) +
                 u'.');
    }

    void settleArguments() {
        switch (m_result.command->arguments) {
        case CommandArguments::none:
            if (!m_arguments.isEmpty())
                fail(quoted(m_result.command->name) + u" accepts no argument such as "_s +
                     quoted(m_arguments.first()) + u", only "_s +
                     listed(m_result.command->options + QStringList{u"--help"_s}) + u'.');
            return;
        case CommandArguments::pauseEnd:
            return settlePauseEnd();
        case CommandArguments::definitionIDs:
            return settleDefinitionIDs();
        case CommandArguments::onOrOff:
            return settleOnOrOff();
        case CommandArguments::maybeOnOrOff:
            return settleMaybeOnOrOff();
        case CommandArguments::enableOrDisable:
            return settleEnableOrDisable();
        case CommandArguments::presetSwitch:
            return settlePresetSwitch();
        case CommandArguments::catalogChange:
            return settleCatalogChange();
        }
    }

    void settlePauseEnd() {
        m_result.pauseEnd = m_arguments.join(u' ');
        const QDateTime now = QDateTime::currentDateTime();
        const auto end = foundation::endOfPhrase(m_result.pauseEnd, now);
        if (!end)
            fail(u"\"pause\" needs how long, such as 90m or 1h30m, or until when, such as \"until 18:00\" or "
                 "\"until tomorrow\""_s +
                 (m_arguments.isEmpty() ? u"."_s : u", not "_s + quoted(m_result.pauseEnd) + u'.'));
        else if (*end > now.addDuration(runtime::Pause::longest))
            fail(
                u"A pause lasts 7 days at most; \"kestrinctl off\" turns Privacy Mode off without an end."_s);
    }

    void settleDefinitionIDs() {
        QStringList accepted = definitionIDs();
        const auto isBuiltIn = [&](const QString &id) { return accepted.contains(id); };
        if (!std::all_of(m_arguments.cbegin(), m_arguments.cend(), isBuiltIn))
            accepted += m_ownIDs();
        settleIDs(m_arguments, accepted, u"an application of the catalog"_s);
    }

    void settleCatalogChange() {
        using enum Invocation::CatalogVerb;
        if (m_arguments.isEmpty())
            return;
        const QString verb = m_arguments.takeFirst();
        if (verb == u"add")
            settleAdd();
        else if (verb == u"remove")
            settleRemove();
        else if (verb != u"candidates")
            fail(u"\"catalog\" accepts add, remove or candidates, or nothing, not "_s + quoted(verb) + u'.');
        else if (!m_arguments.isEmpty())
            fail(u"\"catalog candidates\" accepts no argument such as "_s + quoted(m_arguments.first()) +
                 u'.');
        else
            m_result.catalogVerb = candidates;
    }

    void settleAdd() {
        m_result.catalogVerb = Invocation::CatalogVerb::add;
        if (m_arguments.size() > 1)
            return fail(u"\"catalog add\" accepts one name, not also "_s + quoted(m_arguments.at(1)) +
                        u"; a name of several words needs quotes."_s);
        if (m_arguments.isEmpty() == m_result.running.isEmpty())
            return fail(u"\"catalog add\" needs either the name of an application or --running and one that "
                        "runs."_s);
        if (m_arguments.isEmpty())
            return;
        m_result.application.name = m_arguments.first().trimmed();
        if (m_result.application.name.isEmpty())
            fail(u"\"catalog add\" needs a name that is not empty."_s);
    }

    void settleRemove() {
        m_result.catalogVerb = Invocation::CatalogVerb::remove;
        m_result.ids = m_arguments;
        m_result.ids.removeDuplicates();
        if (m_result.ids.isEmpty())
            fail(u"\"catalog remove\" needs the identifier of an application of your own, which "
                 "\"kestrinctl catalog\" lists."_s);
    }

    void settleIDs(const QStringList &ids, const QStringList &accepted, const QString &what) {
        const auto unknown =
            std::find_if(ids.cbegin(), ids.cend(), [&](const QString &id) { return !accepted.contains(id); });
        if (ids.isEmpty())
            fail(quoted(m_result.command->name) + u" needs the identifier of "_s + what + u": "_s +
                 listed(accepted, u" or "_s) + u'.');
        else if (unknown != ids.cend())
            fail(quoted(*unknown) + u" is not "_s + what + u"; accepted are "_s +
                 listed(shortened(accepted)) + u'.');
        m_result.ids = ids;
        m_result.ids.removeDuplicates();
    }

    void settleOnOrOff() {
        if (!isOnOrOff())
            return fail(quoted(m_result.command->name) + u" accepts exactly one word, on or off."_s);
        m_result.enable = m_arguments.first() == u"on";
    }

    void settleMaybeOnOrOff() {
        if (m_arguments.isEmpty())
            return;
        if (!isOnOrOff())
            return fail(quoted(m_result.command->name) + u" accepts one word, on or off, or nothing."_s);
        m_result.enable = m_arguments.first() == u"on";
        if (m_result.follow)
            fail(quoted(m_result.command->name) + u" accepts --follow only without on or off."_s);
    }

    bool isOnOrOff() const {
        return m_arguments == QStringList{u"on"_s} || m_arguments == QStringList{u"off"_s};
    }

    void settleEnableOrDisable() {
        if (m_arguments != QStringList{u"enable"_s} && m_arguments != QStringList{u"disable"_s})
            return fail(quoted(m_result.command->name) + u" accepts exactly one word, enable or disable."_s);
        m_result.enable = m_arguments.first() == u"enable";
    }

    void settlePresetSwitch() {
        if (m_arguments.isEmpty())
            return;
        const QString verb = m_arguments.takeFirst();
        if (verb != u"enable" && verb != u"disable")
            return fail(u"\"schedule\" accepts enable or disable and the identifier of a preset, or nothing, "
                        "not "_s +
                        quoted(verb) + u'.');
        m_result.enable = verb == u"enable";
        settleIDs(m_arguments, presetIDs(), u"a schedule preset"_s);
    }

    const QStringList m_words;
    const std::function<QStringList()> &m_ownIDs;
    qsizetype m_next = 0;
    bool m_onlyArguments = false;
    QList<Option> m_options;
    QStringList m_arguments;
    Invocation m_result;
    QString m_error;
};

} // namespace

std::variant<Invocation, UsageError> parseCommandLine(const QStringList &arguments,
                                                      const std::function<QStringList()> &ownIDs) {
    return Parser(arguments, ownIDs).parse();
}

} // namespace kestrin::cli
