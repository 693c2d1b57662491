#include "desktop/quitting/TrayMenu.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace kestrin::desktop {

namespace {

struct QuitWords {
    QLatin1StringView language;
    /// Separated by a comma.
    QStringView words;
};

// What the toolkits and the better known applications call it; not what only closes or hides.
constexpr QuitWords knownQuitWords[] = {
    {"ar"_L1, u"خروج,إنهاء"},
    {"bg"_L1, u"Изход"},
    {"ca"_L1, u"Surt,Ix"},
    {"cs"_L1, u"Ukončit,Konec"},
    {"da"_L1, u"Afslut"},
    {"de"_L1, u"Beenden"},
    {"el"_L1, u"Έξοδος"},
    {"en"_L1, u"Quit,Exit"},
    {"es"_L1, u"Salir"},
    {"et"_L1, u"Välju"},
    {"eu"_L1, u"Irten"},
    {"fa"_L1, u"خروج"},
    {"fi"_L1, u"Lopeta,Poistu"},
    {"fr"_L1, u"Quitter"},
    {"gl"_L1, u"Saír"},
    {"he"_L1, u"יציאה"},
    {"hr"_L1, u"Izađi,Izlaz"},
    {"hu"_L1, u"Kilépés"},
    {"id"_L1, u"Keluar"},
    {"it"_L1, u"Esci"},
    {"ja"_L1, u"終了,を終了"},
    {"ko"_L1, u"종료,끝내기"},
    {"lt"_L1, u"Išeiti,Baigti"},
    {"lv"_L1, u"Iziet"},
    {"nb"_L1, u"Avslutt"},
    {"nl"_L1, u"Afsluiten"},
    {"nn"_L1, u"Avslutt"},
    {"no"_L1, u"Avslutt"},
    {"pl"_L1, u"Zakończ,Wyjdź"},
    {"pt"_L1, u"Sair,Encerrar"},
    {"ro"_L1, u"Ieșire,Ieşire"},
    {"ru"_L1, u"Выход,Выйти,Завершить"},
    {"sk"_L1, u"Ukončiť,Koniec"},
    {"sl"_L1, u"Končaj,Izhod"},
    {"sr"_L1, u"Изађи,Излаз"},
    {"sv"_L1, u"Avsluta"},
    {"th"_L1, u"ออก"},
    {"tr"_L1, u"Çıkış,Çık"},
    {"uk"_L1, u"Вихід,Вийти,Завершити"},
    {"vi"_L1, u"Thoát"},
    {"zh"_L1, u"退出,結束"},
};

/// Without the marks of mnemonics: "_Quit", "&Quit", "終了(_Q)". A mark that is doubled stands for itself.
QString withoutMnemonic(const QString &label) {
    QString text;
    bool isMarked = false;
    for (qsizetype i = 0; i < label.size(); ++i) {
        const QChar character = label[i];
        const bool isMark = character == u'_' || character == u'&';
        if (isMark && i + 1 < label.size() && label[i + 1] == character)
            ++i;
        else if (isMark) {
            isMarked = true;
            continue;
        }
        text += character;
    }
    text = text.trimmed();
    if (isMarked && text.size() > 3 && text.endsWith(u')') && text[text.size() - 3] == u'(')
        text.chop(3);
    return text;
}

/// As it is compared: what people read, without the accelerator behind a tab and the dots of a question to
/// come.
QString comparable(const QString &label) {
    QString text = withoutMnemonic(label.section(u'\t', 0, 0)).simplified();
    while (text.endsWith(u'.') || text.endsWith(u'…'))
        text.chop(1);
    return text.trimmed().toCaseFolded();
}

/// Calls `visit` for every item that a user could choose now, outer ones first, until it returns true.
template <typename Visit>
const TrayMenuItem *firstChoosable(const TrayMenuItem &root, Visit visit) {
    std::vector<const TrayMenuItem *> level{&root};
    while (!level.empty()) {
        std::vector<const TrayMenuItem *> next;
        for (const TrayMenuItem *parent : level) {
            for (const TrayMenuItem &item : parent->children) {
                if (!item.isEnabled || !item.isVisible)
                    continue;
                if (item.hasSubmenu || !item.children.empty())
                    next.push_back(&item);
                else if (item.isCommand && visit(item))
                    return &item;
            }
        }
        level = std::move(next);
    }
    return nullptr;
}

} // namespace

QStringList quitWords(const QStringList &languages) {
    QStringList words;
    for (const QString &language : languages + QStringList{u"en"_s}) {
        const QString primary = language.section(u'-', 0, 0).section(u'_', 0, 0);
        for (const QuitWords &known : knownQuitWords) {
            if (known.language == primary)
                words += known.words.toString().split(u',');
        }
    }
    words.removeDuplicates();
    return words;
}

bool meansQuit(const QString &label, const QStringList &words, const QStringList &applicationNames) {
    const QString text = comparable(label);
    const auto isWord = [&words](const QString &candidate) {
        return std::any_of(words.cbegin(), words.cend(),
                           [&](const QString &word) { return word.toCaseFolded() == candidate; });
    };
    return isWord(text) ||
           std::any_of(applicationNames.cbegin(), applicationNames.cend(),
                       [&](const QString &applicationName) {
                           const QString name = applicationName.simplified().toCaseFolded();
                           if (name.isEmpty())
                               return false;
                           return (text.endsWith(name) && isWord(text.chopped(name.size()).trimmed())) ||
                                  (text.startsWith(name) && isWord(text.sliced(name.size()).trimmed()));
                       });
}

std::optional<qint32> quitItem(const TrayMenuItem &root, const QStringList &words,
                               const QStringList &applicationNames) {
    const TrayMenuItem *item = firstChoosable(root, [&](const TrayMenuItem &candidate) {
        return meansQuit(candidate.label, words, applicationNames);
    });
    if (!item)
        item = firstChoosable(
            root, [](const TrayMenuItem &candidate) { return candidate.iconName == "application-exit"_L1; });
    return item ? std::optional(item->id) : std::nullopt;
}

} // namespace kestrin::desktop
