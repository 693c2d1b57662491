// The activity log and the settings: what is in their files, and what becomes of them when things break.

#include "engine/JSONMacActivityLogStore.h"
#include "engine/JSONPrivacyModeSettingsStore.h"
#include "foundation/FileStamp.h"
#include "tests/support/Samples.h"
#include "tests/support/Test.h"

using samples::contents;
using samples::write;

class StoresTest : public QObject {
    Q_OBJECT

  private Q_SLOTS:
    void init() { m_folder = std::make_unique<QTemporaryDir>(); }
    void format();
    void reading();
    void settings();

  private:
    QString folder() const { return m_folder->filePath(u"a/b"_s); }
    QString path() const { return folder() + u"/activity-log.json"_s; }
    JSONMacActivityLogStore store() const { return JSONMacActivityLogStore(QUrl::fromLocalFile(path())); }
    QStringList entries() const {
        return QDir(folder()).entryList(QDir::AllEntries | QDir::System | QDir::Hidden |
                                        QDir::NoDotAndDotDot);
    }

    std::unique_ptr<QTemporaryDir> m_folder;
};

void StoresTest::format() {
    auto event = samples::event(u"\"},{\" \\ \u0000 \n \u202e \U0001f3a5 "_s);
    event.appName = u""_s;
    event.bundleIdentifier = QString(QChar(0xdc00)) + u'a' + QChar(0xd800); // halves of characters
    store().append(samples::event(u"First."_s));
    store().append(event);
    const QByteArray text = contents(path());
    QVERIFY(text.startsWith("[{") && text.endsWith("}]") && !text.contains('\n') && !text.contains(": "));
    QVERIFY(text.contains(R"("date":"2026-03-14T09:26:53Z")"));
    QCOMPARE(text.count("appName") + text.count("bundleIdentifier"), 2); // absent ones are left out

    // Dates lose their fraction on the way, and ids may be spelled with capital letters.
    const QByteArray id = event.id.toByteArray(QUuid::WithoutBraces);
    QVERIFY(text.contains("\"id\":\"" + id + '"') && event.date.time().msec() > 0);
    write(path(), QByteArray(text).replace(id, id.toUpper()));
    event.date = event.date.addMSecs(-event.date.time().msec());
    event.bundleIdentifier = u"\ufffda\ufffd"_s;
    QCOMPARE(store().recent(1), QList{event});
}

void StoresTest::reading() {
    const QByteArray event =
        R"({"id":"6ba7b810-9dad-11d1-80b4-00c04fd430c8","date":"2026-03-14T09:26:53Z","kind":"dryRun","message":"Old."})";
    // How many of its events are kept: all or none.
    const auto row = [this](const char *name, const QByteArray &text, qsizetype count = 0) {
        init();
        write(path(), text);
        const QStringList old(count, u"Old."_s);
        QVERIFY2(samples::messages(store().recent(8)) == old && contents(path()) == text, name);
        // What does not read is told, and kept beside the new file.
        const bool isDamaged = count == 0 && !text.isEmpty();
        QVERIFY2(store().problem().isEmpty() == !isDamaged, name);
        const StoreResult appended = store().tryAppend(samples::event(u"New."_s));
        QVERIFY2(appended.isKept() && appended.notice.isEmpty() == !isDamaged, name);
        QCOMPARE(samples::messages(store().recent(8)), QStringList{u"New."_s} + old);
        QVERIFY(!contents(path()).contains('\n') && store().problem().isEmpty());
        const QString aside = entries().value(1);
        QCOMPARE(isDamaged ? contents(folder() + u'/' + aside) : text, text);
        QCOMPARE(entries().size(), isDamaged ? 3 : 2);
    };
    const auto changed = [&](const char *name, const QByteArray &before, const QByteArray &after,
                             qsizetype count = 0) {
        row(name, '[' + event + ',' + QByteArray(event).replace(before, after) + ']', count);
    };
    row("indented", " [\n  " + QByteArray(event).replace(",", ",\n ") + "\n]\n", 1);
    changed("unknown keys", "{", R"({"x":[1e400,{"kind":null}],)", 2);
    changed("null for absent", "{", R"({"appName":null,)", 2);
    changed("duplicate key, last one counts", R"("message")", R"("message":"x","message")", 2);
    changed("depth", "{", "{\"x\":" + QByteArray(500, '[') + QByteArray(500, ']') + ',', 2);

    row("empty", {});
    row("cut short", '[' + event);
    row("trailing comma", '[' + event + ",]");
    changed("unknown kind", "dryRun", "dryrun");
    changed("null for required", R"("Old.")", "null");
    changed("date with an offset", "53Z", "53+00:00");
    changed("day that does not exist", "2026-03-14", "2026-02-29");
    changed("id with another letter", "00c04fd430c8", "00c04fd430cg");
    changed("invalid UTF-8", "Old.", "\xc3\x28");
    changed("half a character", "Old.", R"(\ud800)");
    changed("duplicate key, second wrong", R"("message")", R"("message":"x","kind":"x","message")");
    changed("too deep", "{", "{\"x\":" + QByteArray(100'000, '[') + QByteArray(100'000, ']') + ',');
}

void StoresTest::settings() {
    const QString file = folder() + u"/privacy-mode-settings.json"_s;
    const PrivacyModeSettings fallback{true, {u"fallback"_s}};
    JSONPrivacyModeSettingsStore settings(QUrl::fromLocalFile(file), fallback);
    QVERIFY(settings.load() == fallback && !QFile::exists(file));
    for (const PrivacyModeSettings &saved :
         {PrivacyModeSettings{true, {}}, PrivacyModeSettings{false, {u"zoom"_s, u"facetime"_s}}}) {
        settings.save(saved);
        QCOMPARE(settings.load(), saved);
    }
    const QByteArray text = contents(file);
    QVERIFY(text.count('\n') > 2 && text.indexOf("isEnabled") < text.indexOf("protectedDefinitionIDs"));
    QVERIFY(samples::isOwnersAlone(file));

    // What is as it was stays the file that it was, unless others could read it.
    const auto changes = [&] {
        const quint64 before = FileStamp::of(QFile::encodeName(file)).inode;
        settings.save({false, {u"zoom"_s, u"facetime"_s}});
        return FileStamp::of(QFile::encodeName(file)).inode != before;
    };
    QVERIFY(!changes());
    QFile::setPermissions(file, QFile::permissions(file) | QFile::ReadOther);
    QVERIFY(changes() && samples::isOwnersAlone(file));

    write(file, R"({"protectedDefinitionIDs":["zoom","a","zoom"],"isEnabled":false,"version":{"n":2}})");
    QCOMPARE(settings.load(), (PrivacyModeSettings{false, {u"a"_s, u"zoom"_s}}));
    for (const QByteArray unusable :
         {R"({"isEnabled":false})", R"({"isEnabled":0,"protectedDefinitionIDs":[]})",
          R"({"isEnabled":false,"protectedDefinitionIDs":["a",1]})",
          R"({"isEnabled":false,"protectedDefinitionIDs":[)", ""}) {
        write(file, unusable);
        QCOMPARE(settings.load(), fallback);
        QCOMPARE(contents(file), unusable);
        QVERIFY(!settings.stored() && settings.problem().isEmpty() == unusable.isEmpty());
        // Even what is not changed has to be kept then.
        const StoreResult saved = settings.update([](PrivacyModeSettings &, bool areStored) {
            if (areStored)
                qFatal("A fallback is nobody's choice.");
        });
        QVERIFY(saved.isKept() && saved.notice.isEmpty() == unusable.isEmpty());
        QCOMPARE(settings.stored(), fallback);
    }
}

KESTRIN_TEST(StoresTest)
#include "tst_stores.moc"
