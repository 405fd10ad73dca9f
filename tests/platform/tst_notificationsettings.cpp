#include "platform/linux/NotificationSettings.h"
#include "support/NoDescriptors.h"

#include <QDir>
#include <QFile>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QTest>

using namespace Qt::StringLiterals;

namespace kelvo {

class NotificationSettingsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();
    void gnomeHidesThemForAllProgramsOrForThisOne_data();
    void gnomeHidesThemForAllProgramsOrForThisOne();
    void gnomeWithoutItsToolIsNotKnown();
    void aChangeIsSeenAtTheNextReading();
    void itCanBeDestroyedWhileItReads();
    void plasmaHidesThePopupsOfThisProgram_data();
    void plasmaHidesThePopupsOfThisProgram();
    void aFileOfPlasmaThatCannotBeReadIsNotKnown();
    void otherDesktopsAreNotKnown();

private:
    /// Writes a file in the temporary directory.
    void write(const QString &path, const QByteArray &content) const;
    /// Puts a gsettings into PATH that runs this shell code with the schema in $2 and the key in $3.
    void installGsettings(const QByteArray &code) const;
    static QString turnedOffIn(const QStringList &desktops);

    std::unique_ptr<QTemporaryDir> directory_;
    QByteArray path_;
};

void NotificationSettingsTest::init()
{
    QTest::failOnWarning(QRegularExpression(u".?"_s));
    directory_ = std::make_unique<QTemporaryDir>();
    path_ = qgetenv("PATH");
    qputenv("XDG_CONFIG_HOME", QFile::encodeName(directory_->filePath(u"config"_s)));
    qputenv("XDG_CONFIG_DIRS", QFile::encodeName(directory_->filePath(u"system"_s)));
}

void NotificationSettingsTest::cleanup()
{
    qputenv("PATH", path_);
    qunsetenv("XDG_CONFIG_HOME");
    qunsetenv("XDG_CONFIG_DIRS");
}

void NotificationSettingsTest::write(const QString &path, const QByteArray &content) const
{
    QFile file(directory_->filePath(path));
    QVERIFY(QDir().mkpath(QFileInfo(file).path()));
    QVERIFY(file.open(QIODevice::WriteOnly));
    QCOMPARE(file.write(content), content.size());
}

void NotificationSettingsTest::installGsettings(const QByteArray &code) const
{
    write(u"bin/gsettings"_s, "#!/bin/sh\n[ \"$1\" = get ] || exit 2\n" + code + '\n');
    QVERIFY(QFile::setPermissions(directory_->filePath(u"bin/gsettings"_s),
                                  QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner));
    qputenv("PATH", QFile::encodeName(directory_->filePath(u"bin"_s)) + ":/usr/bin:/bin");
}

QString NotificationSettingsTest::turnedOffIn(const QStringList &desktops)
{
    NotificationSettings settings(desktops);
    const auto answer = settings.turnedOffIn();
    return QTest::qWaitFor([&answer] { return answer.isFinished(); }) ? answer.result() : u"no answer"_s;
}

void NotificationSettingsTest::gnomeHidesThemForAllProgramsOrForThisOne_data()
{
    QTest::addColumn<QByteArray>("gsettings");
    QTest::addColumn<QString>("place");
    const auto answers = [](const char *banners, const char *enable) {
        return "case $2,$3 in\n"
               "org.gnome.desktop.notifications,show-banners) "_ba
            + banners
            + ";;\n"
              "org.gnome.desktop.notifications.application:/org/gnome/desktop/notifications/application/"
              "app-kelvo-kelvo/,enable) "
            + enable + ";;\n*) echo \"No such key\" >&2; exit 1;;\nesac";
    };
    const auto place = u"Settings › Notifications"_s;
    QTest::newRow("shown") << answers("echo true", "echo true") << QString();
    QTest::newRow("hidden for all programs") << answers("echo false", "echo true") << place;
    QTest::newRow("hidden for this program") << answers("echo true", "echo false") << place;
    QTest::newRow("another version of the settings") << answers("exit 1", "exit 1") << QString();
    QTest::newRow("only the newer setting") << answers("exit 1", "echo false") << place;
}

void NotificationSettingsTest::gnomeHidesThemForAllProgramsOrForThisOne()
{
    QFETCH(QByteArray, gsettings);
    QFETCH(QString, place);
    installGsettings(gsettings);
    QCOMPARE(turnedOffIn({u"ubuntu"_s, u"GNOME"_s}), place);
}

void NotificationSettingsTest::gnomeWithoutItsToolIsNotKnown()
{
    qputenv("PATH", QFile::encodeName(directory_->filePath(u"bin"_s)));
    QCOMPARE(turnedOffIn({u"GNOME"_s}), QString());
}

void NotificationSettingsTest::aChangeIsSeenAtTheNextReading()
{
    NotificationSettings settings({u"KDE"_s});
    QCOMPARE(settings.turnedOffIn().result(), QString());
    write(u"config/plasmanotifyrc"_s, "[Applications][app.kelvo.Kelvo]\nShowPopups=false\n");
    QCOMPARE(settings.turnedOffIn().result(), u"System Settings › Notifications"_s);
}

void NotificationSettingsTest::itCanBeDestroyedWhileItReads()
{
    installGsettings("echo began > \"$(dirname \"$0\")/began\"; exec sleep 60");
    auto settings = std::make_unique<NotificationSettings>(QStringList{u"GNOME"_s});
    const auto answer = settings->turnedOffIn();
    QTRY_VERIFY(QFile::exists(directory_->filePath(u"bin/began"_s)));
    QVERIFY(!answer.isFinished());
    settings.reset();
    QVERIFY(answer.isCanceled());
}

void NotificationSettingsTest::plasmaHidesThePopupsOfThisProgram_data()
{
    QTest::addColumn<QByteArray>("user");
    QTest::addColumn<QByteArray>("system");
    QTest::addColumn<bool>("hidden");
    const auto off = "[Applications][app.kelvo.Kelvo]\nSeen=true\nShowPopups=false\n"_ba;
    const auto on = "[Applications][app.kelvo.Kelvo]\nShowPopups=true\n"_ba;
    QTest::newRow("no file") << QByteArray() << QByteArray() << false;
    QTest::newRow("off") << off << QByteArray() << true;
    QTest::newRow("on") << on << QByteArray() << false;
    QTest::newRow("not chosen") << "[Applications][app.kelvo.Kelvo]\nSeen=true\n"_ba << QByteArray() << false;
    QTest::newRow("off for another program")
        << "[Applications][org.example.Other]\nShowPopups=false\n"_ba << QByteArray() << false;
    QTest::newRow("off after another program")
        << "[DoNotDisturb]\nShowPopups=true\n[Applications][org.example.Other]\nShowPopups=true\n"_ba + off
        << QByteArray() << true;
    QTest::newRow("off for all accounts") << QByteArray() << off << true;
    QTest::newRow("on for this account only") << on << off << false;
    QTest::newRow("written twice") << on + off << QByteArray() << true;
    QTest::newRow("off for this account, on finally")
        << off << "[Applications][app.kelvo.Kelvo]\nShowPopups[$i]=true\n"_ba << false;
    QTest::newRow("on for this account, off in a final group")
        << on << "[Applications][app.kelvo.Kelvo][$i]\nShowPopups=false\n"_ba << true;
    QTest::newRow("on for this account, off in a final file") << on << "[$i]\n"_ba + off << true;
    QTest::newRow("on for this account, off in a file that is final at its end")
        << on << off + "[Other]\n[$i]\n"_ba << true;
    QTest::newRow("off for this account, not chosen in a final group")
        << off << "[Applications][app.kelvo.Kelvo][$i]\n"_ba << false;
    QTest::newRow("on for this account, another group final")
        << on << "[DoNotDisturb][$i]\nWhenScreensMirrored=false\n"_ba + off << false;
    QTest::newRow("off for this account, its key final there") << off.chopped(7) + "[$i]=false\n" << on << true;
}

void NotificationSettingsTest::plasmaHidesThePopupsOfThisProgram()
{
    QFETCH(QByteArray, user);
    QFETCH(QByteArray, system);
    QFETCH(bool, hidden);
    for (const auto &[path, content] :
         {std::pair(u"config/plasmanotifyrc"_s, user), std::pair(u"system/plasmanotifyrc"_s, system)}) {
        if (!content.isEmpty()) {
            write(path, content);
        }
    }
    QCOMPARE(turnedOffIn({u"KDE"_s}), hidden ? u"System Settings › Notifications"_s : QString());
}

void NotificationSettingsTest::aFileOfPlasmaThatCannotBeReadIsNotKnown()
{
    write(u"config/plasmanotifyrc"_s, "[Applications][app.kelvo.Kelvo]\nShowPopups=false\n");
    const NoDescriptors none;
    QCOMPARE(NotificationSettings({u"KDE"_s}).turnedOffIn().result(), QString());
}

void NotificationSettingsTest::otherDesktopsAreNotKnown()
{
    installGsettings("echo false");
    write(u"config/plasmanotifyrc"_s, "[Applications][app.kelvo.Kelvo]\nShowPopups=false\n");
    QCOMPARE(turnedOffIn({u"XFCE"_s}), QString());
    QCOMPARE(turnedOffIn({}), QString());
}

} // namespace kelvo

QTEST_GUILESS_MAIN(kelvo::NotificationSettingsTest)
#include "tst_notificationsettings.moc"
