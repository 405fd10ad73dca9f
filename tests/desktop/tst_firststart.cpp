#include "DesktopWindow.h"
#include "Hand.h"
#include "KelvoProcess.h"
#include "Screen.h"
#include "TrayItem.h"

#include <QSettings>
#include <QTest>

#include <filesystem>

namespace kelvo {

using namespace Qt::StringLiterals;

/// The first start of the program.
class FirstStartTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();
    void theChosenServiceIsKeptAndTheOnboardingDoesNotOpenAgain();
    void theOnboardingOpensAgainAfterItWasClosed();
    void aSecondStartOpensTheOnboardingAndNotThePopover();

private:
    static QString title() { return u"Welcome to Kelvo"_s; }
    void startAndShowRing();

    std::unique_ptr<SimulatedInternet> internet_;
    std::unique_ptr<KelvoProcess> kelvo_;
};

void FirstStartTest::init()
{
    internet_ = std::make_unique<SimulatedInternet>();
    kelvo_ = std::make_unique<KelvoProcess>(*internet_);
    startAndShowRing();
    QTRY_COMPARE(DesktopWindow::activeTitle(), title());
}

void FirstStartTest::cleanup()
{
    kelvo_.reset();
}

void FirstStartTest::startAndShowRing()
{
    kelvo_->start();
    QTRY_VERIFY(Screen::findRing(RingState::available));
}

void FirstStartTest::theChosenServiceIsKeptAndTheOnboardingDoesNotOpenAgain()
{
    QCOMPARE(DesktopWindow::titled(title())->geometry.size(), QSize(400, 300));
    QVERIFY(kelvo_->clickOn(Accessible::Button, u"Continue"_s));
    QVERIFY(kelvo_->clickOn(Accessible::RadioButton, u"Cursor"_s));
    QVERIFY(kelvo_->clickOn(Accessible::Button, u"Continue"_s));
    QVERIFY(kelvo_->clickOn(Accessible::Button, u"Not now"_s));
    QVERIFY(kelvo_->find(Accessible::Label, u"Watching Cursor"_s));
    QVERIFY(kelvo_->clickOn(Accessible::Button, u"Done"_s));
    QTRY_VERIFY(!DesktopWindow::titled(title()));
    QVERIFY(kelvo_->isRunning());
    kelvo_->endInSilence();

    {
        const QSettings file(kelvo_->settingsFile(), QSettings::IniFormat);
        QCOMPARE(file.value(u"hasOnboarded"_s).toString(), u"true"_s);
        QCOMPARE(file.value(u"serviceOrder"_s).toStringList().value(0), u"cursor"_s);
        QVERIFY(file.value(u"enabledServices"_s).toStringList().contains(u"cursor"_s));
    }
    using std::filesystem::perms;
    QVERIFY(std::filesystem::status(kelvo_->settingsFile().toStdString()).permissions()
            == (perms::owner_read | perms::owner_write));

    startAndShowRing();
    QTRY_COMPARE(TrayItem::toolTip(), u"Cursor: Operational"_s);
    QVERIFY(!DesktopWindow::titled(title()));
}

void FirstStartTest::theOnboardingOpensAgainAfterItWasClosed()
{
    Hand::press(u"alt+F4"_s);
    QTRY_VERIFY(!DesktopWindow::titled(title()));
    QVERIFY(kelvo_->isRunning());
    kelvo_->endInSilence();
    startAndShowRing();
    QTRY_VERIFY(DesktopWindow::titled(title()));
}

void FirstStartTest::aSecondStartOpensTheOnboardingAndNotThePopover()
{
    Hand::press(u"alt+F4"_s);
    QTRY_VERIFY(!DesktopWindow::titled(title()));
    KelvoProcess::startAgain();
    QTRY_VERIFY(DesktopWindow::titled(title()));
    QVERIFY(!DesktopWindow::titled(u"Kelvo"_s));
}

} // namespace kelvo

QTEST_MAIN(kelvo::FirstStartTest)
#include "tst_firststart.moc"
