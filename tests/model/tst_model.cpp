#include "model/RelativeTime.h"
#include "model/Service.h"
#include "model/ServiceHealth.h"
#include "model/ServiceStatus.h"

#include <QTest>

using namespace kelvo;
using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

enum class Speed { slow, fast };

} // namespace

template<>
inline constexpr std::array kelvo::rawValueTable<Speed>{RawValue<Speed, int>{Speed::slow, 60},
                                                        RawValue<Speed, int>{Speed::fast, 30}};

namespace {

/// The expected catalogue, written independently of the program.
struct Row
{
    ServiceID id;
    const char16_t *rawValue;
    const char16_t *name;
    StatusSource source;
    const char16_t *probeURL;
};

const std::vector<Row> &expectedCatalogue()
{
    const QString claudePage = u"https://status.claude.com"_s;
    const QString openaiPage = u"https://status.openai.com"_s;
    static const std::vector<Row> rows{
        {ServiceID::claude, u"claude", u"Claude", StatuspageSource{claudePage, {u"claude.ai"_s}},
         u"https://claude.ai/login"},
        {ServiceID::chatgpt, u"chatgpt", u"ChatGPT", StatuspageSource{openaiPage, {u"Conversations"_s, u"Login"_s}},
         u"https://chatgpt.com/"},
        {ServiceID::cursor, u"cursor", u"Cursor",
         StatuspageSource{u"https://status.cursor.com"_s, {u"IDE"_s, u"cursor.com"_s}}, u"https://cursor.com/"},
        {ServiceID::gemini, u"gemini", u"Gemini", GoogleDashboardSource{u"Gemini"_s}, u"https://gemini.google.com/"},
        {ServiceID::copilot, u"copilot", u"GitHub Copilot",
         StatuspageSource{u"https://www.githubstatus.com"_s, {u"Copilot"_s}}, u"https://api.githubcopilot.com/"},
        {ServiceID::anthropicAPI, u"anthropicAPI", u"Anthropic API", StatuspageSource{claudePage, {u"Claude API"_s}},
         u"https://api.anthropic.com/v1/models"},
        {ServiceID::openaiAPI, u"openaiAPI", u"OpenAI API",
         StatuspageSource{openaiPage, {u"Responses"_s, u"Embeddings"_s}}, u"https://api.openai.com/v1/models"},
        {ServiceID::claudeCode, u"claudeCode", u"Claude Code", StatuspageSource{claudePage, {u"Claude Code"_s}},
         u"https://api.anthropic.com/v1/models"},
    };
    return rows;
}

TimePoint instant(TimePoint::duration sinceEpoch)
{
    return TimePoint{} + sinceEpoch;
}

} // namespace

class ModelTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void theCatalogueContainsEightServices();
    void eachServiceHasItsNameSourceAndProbe_data();
    void eachServiceHasItsNameSourceAndProbe();
    void idsAndCatalogueAreInTheSameOrder();
    void catalogueIsBuiltOnce();
    void anthropicApiAndClaudeCodeHaveTheSameProbe();
    void onlyGeminiIsReadFromGoogle();
    void everyAddressIsHttpsAndNoPageHasATrailingSlash();
    void everyServiceIsFoundByItsRawValue();
    void rawValuesAreComparedExactly_data();
    void rawValuesAreComparedExactly();
    void numbersAreRawValuesToo();
    void sourcesAreEqualWhenKindAndPayloadAre_data();
    void sourcesAreEqualWhenKindAndPayloadAre();
    void servicesDifferByEveryField_data();
    void servicesDifferByEveryField();
    void equalServicesHaveEqualHashes();
    void healthsHaveTheirRawValues_data();
    void healthsHaveTheirRawValues();
    void anUnknownRawValueGivesNoHealth();
    void affectedIsDegradedOrOutage_data();
    void affectedIsDegradedOrOutage();
    void aServiceThatWasNeverCheckedIsUnknown();
    void statusesDifferByEveryField_data();
    void statusesDifferByEveryField();
    void statusesWithoutCheckTimeAreEqual();
    void aServiceThatWasNeverCheckedReadsNotCheckedYet_data();
    void aServiceThatWasNeverCheckedReadsNotCheckedYet();
    void aCheckReadsItsAge_data();
    void aCheckReadsItsAge();
};

void ModelTest::theCatalogueContainsEightServices()
{
    QCOMPARE(Service::catalog().size(), std::size_t{8});
    QCOMPARE(allServiceIDs.size(), std::size_t{8});
}

void ModelTest::eachServiceHasItsNameSourceAndProbe_data()
{
    QTest::addColumn<int>("position");
    for (int position = 0; position < 8; ++position) {
        QTest::newRow(qPrintable(QString::fromUtf16(expectedCatalogue()[std::size_t(position)].name))) << position;
    }
}

void ModelTest::eachServiceHasItsNameSourceAndProbe()
{
    QFETCH(int, position);
    const Row &expected = expectedCatalogue().at(std::size_t(position));
    const Service &service = Service::catalog().at(std::size_t(position));
    QCOMPARE(service.id, expected.id);
    QCOMPARE(rawValue(service.id), QString::fromUtf16(expected.rawValue));
    QCOMPARE(service.name, QString::fromUtf16(expected.name));
    QVERIFY(service.source == expected.source);
    QCOMPARE(service.probeURL.toString(), QString::fromUtf16(expected.probeURL));
    QCOMPARE(&Service::by(expected.id), &service);
}

void ModelTest::idsAndCatalogueAreInTheSameOrder()
{
    for (std::size_t i = 0; i < allServiceIDs.size(); ++i) {
        QCOMPARE(Service::catalog()[i].id, allServiceIDs[i]);
        QCOMPARE(static_cast<std::size_t>(allServiceIDs[i]), i);
    }
    QCOMPARE(allServiceIDs.front(), ServiceID::claude);
    QCOMPARE(allServiceIDs.back(), ServiceID::claudeCode);
    QCOMPARE(rawValue(allServiceIDs[4]), u"copilot"_s);
    QCOMPARE(Service::catalog()[4].name, u"GitHub Copilot"_s);
}

void ModelTest::catalogueIsBuiltOnce()
{
    QCOMPARE(&Service::catalog(), &Service::catalog());
}

void ModelTest::anthropicApiAndClaudeCodeHaveTheSameProbe()
{
    QCOMPARE(Service::by(ServiceID::claudeCode).probeURL, Service::by(ServiceID::anthropicAPI).probeURL);
}

void ModelTest::onlyGeminiIsReadFromGoogle()
{
    for (const auto &service : Service::catalog()) {
        QCOMPARE(std::holds_alternative<GoogleDashboardSource>(service.source), service.id == ServiceID::gemini);
    }
}

void ModelTest::everyAddressIsHttpsAndNoPageHasATrailingSlash()
{
    for (const auto &service : Service::catalog()) {
        QVERIFY(service.probeURL.isValid());
        QCOMPARE(service.probeURL.scheme(), u"https"_s);
        if (const auto *page = std::get_if<StatuspageSource>(&service.source)) {
            QVERIFY(page->base.startsWith(u"https://"_s));
            QVERIFY(!page->base.endsWith(u'/'));
            QVERIFY(!page->components.isEmpty());
        }
    }
}

void ModelTest::everyServiceIsFoundByItsRawValue()
{
    for (const auto id : allServiceIDs) {
        QCOMPARE(fromRawValue<ServiceID>(rawValue(id)), std::optional(id));
    }
}

void ModelTest::rawValuesAreComparedExactly_data()
{
    QTest::addColumn<QString>("raw");
    // Each raw value with one letter in the other case, and with an underscore inserted at each position.
    for (const auto id : allServiceIDs) {
        const QString exact = rawValue(id);
        for (qsizetype i = 0; i < exact.size(); ++i) {
            QString changed = exact;
            changed[i] = exact[i].isUpper() ? exact[i].toLower() : exact[i].toUpper();
            QTest::newRow(qPrintable(changed)) << changed;
            const QString stretched = QString(exact).insert(i, u'_');
            QTest::newRow(qPrintable(stretched)) << stretched;
        }
    }
    QTest::newRow("empty") << u""_s;
    QTest::newRow("blank before") << u" claude"_s;
    QTest::newRow("blank after") << u"claude "_s;
    QTest::newRow("beginning") << u"claud"_s;
    QTest::newRow("display name") << u"GitHub Copilot"_s;
    QTest::newRow("snake case") << u"claude_code"_s;
}

void ModelTest::rawValuesAreComparedExactly()
{
    QFETCH(QString, raw);
    QCOMPARE(fromRawValue<ServiceID>(raw), std::nullopt);
}

void ModelTest::numbersAreRawValuesToo()
{
    QCOMPARE(rawValue(Speed::slow), 60);
    QCOMPARE(rawValue(Speed::fast), 30);
    QCOMPARE(fromRawValue<Speed>(30), std::optional(Speed::fast));
    QCOMPARE(fromRawValue<Speed>(0), std::nullopt);
    QCOMPARE(allCases<Speed>(), (std::array{Speed::slow, Speed::fast}));
}

void ModelTest::sourcesAreEqualWhenKindAndPayloadAre_data()
{
    QTest::addColumn<StatusSource>("left");
    QTest::addColumn<StatusSource>("right");
    QTest::addColumn<bool>("equal");
    const StatusSource page = StatuspageSource{u"https://s.example"_s, {u"A"_s, u"B"_s}};
    QTest::newRow("same page") << page << StatusSource(StatuspageSource{u"https://s.example"_s, {u"A"_s, u"B"_s}})
                               << true;
    QTest::newRow("components in another order")
        << page << StatusSource(StatuspageSource{u"https://s.example"_s, {u"B"_s, u"A"_s}}) << false;
    QTest::newRow("fewer components") << page << StatusSource(StatuspageSource{u"https://s.example"_s, {u"A"_s}})
                                      << false;
    QTest::newRow("component in another case")
        << page << StatusSource(StatuspageSource{u"https://s.example"_s, {u"a"_s, u"B"_s}}) << false;
    QTest::newRow("another page") << page << StatusSource(StatuspageSource{u"https://t.example"_s, {u"A"_s, u"B"_s}})
                                  << false;
    QTest::newRow("same product") << StatusSource(GoogleDashboardSource{u"Gemini"_s})
                                  << StatusSource(GoogleDashboardSource{u"Gemini"_s}) << true;
    QTest::newRow("another product") << StatusSource(GoogleDashboardSource{u"Gemini"_s})
                                     << StatusSource(GoogleDashboardSource{u"Gmail"_s}) << false;
    QTest::newRow("page and product of the same text")
        << StatusSource(StatuspageSource{u"Gemini"_s, {}}) << StatusSource(GoogleDashboardSource{u"Gemini"_s}) << false;
}

void ModelTest::sourcesAreEqualWhenKindAndPayloadAre()
{
    QFETCH(StatusSource, left);
    QFETCH(StatusSource, right);
    QFETCH(bool, equal);
    QCOMPARE(left == right, equal);
    // Unequal values can have equal hashes by chance; these have not.
    QCOMPARE(qHash(left) == qHash(right), equal);
    QCOMPARE(qHash(left, 42) == qHash(right, 42), equal);
}

void ModelTest::servicesDifferByEveryField_data()
{
    QTest::addColumn<int>("field");
    QTest::newRow("id") << 0;
    QTest::newRow("name") << 1;
    QTest::newRow("source") << 2;
    QTest::newRow("probe address") << 3;
}

void ModelTest::servicesDifferByEveryField()
{
    QFETCH(int, field);
    const Service service = Service::by(ServiceID::claude);
    Service other = service;
    switch (field) {
    case 0: other.id = ServiceID::claudeCode; break;
    case 1: other.name += u'!'; break;
    case 2: other.source = GoogleDashboardSource{u"Claude"_s}; break;
    default: other.probeURL = QUrl(u"https://claude.ai/"_s);
    }
    QVERIFY(!(service == other));
    QVERIFY(qHash(service) != qHash(other));
}

void ModelTest::equalServicesHaveEqualHashes()
{
    for (const auto &service : Service::catalog()) {
        const Service copy = service;
        QVERIFY(copy == service);
        QCOMPARE(qHash(copy), qHash(service));
        QCOMPARE(qHash(copy, 7), qHash(service, 7));
    }
}

void ModelTest::healthsHaveTheirRawValues_data()
{
    QTest::addColumn<ServiceHealth>("health");
    QTest::addColumn<QString>("raw");
    QTest::newRow("operational") << ServiceHealth::operational << u"operational"_s;
    QTest::newRow("degraded") << ServiceHealth::degraded << u"degraded"_s;
    QTest::newRow("outage") << ServiceHealth::outage << u"outage"_s;
    QTest::newRow("unknown") << ServiceHealth::unknown << u"unknown"_s;
}

void ModelTest::healthsHaveTheirRawValues()
{
    QFETCH(ServiceHealth, health);
    QFETCH(QString, raw);
    QCOMPARE(rawValue(health), raw);
    QCOMPARE(fromRawValue<ServiceHealth>(raw), std::optional(health));
}

void ModelTest::anUnknownRawValueGivesNoHealth()
{
    for (const auto &text : {u""_s, u"Outage"_s, u"operational "_s, u"major_outage"_s}) {
        QCOMPARE(fromRawValue<ServiceHealth>(text), std::nullopt);
    }
}

void ModelTest::affectedIsDegradedOrOutage_data()
{
    QTest::addColumn<ServiceHealth>("health");
    QTest::addColumn<bool>("affected");
    QTest::newRow("operational") << ServiceHealth::operational << false;
    QTest::newRow("degraded") << ServiceHealth::degraded << true;
    QTest::newRow("outage") << ServiceHealth::outage << true;
    QTest::newRow("unknown") << ServiceHealth::unknown << false;
}

void ModelTest::affectedIsDegradedOrOutage()
{
    QFETCH(ServiceHealth, health);
    QFETCH(bool, affected);
    QCOMPARE(isAffected(health), affected);
}

void ModelTest::aServiceThatWasNeverCheckedIsUnknown()
{
    const ServiceStatus status;
    QCOMPARE(status.health, ServiceHealth::unknown);
    QVERIFY(!status.lastChecked);
    QVERIFY(status.label.isEmpty());
    QVERIFY(!status.recoveredUntil);
}

void ModelTest::statusesDifferByEveryField_data()
{
    QTest::addColumn<ServiceStatus>("other");
    const ServiceStatus status{ServiceHealth::degraded, instant(1000s), u"Partial outage"_s, instant(1600s)};
    auto other = status;
    other.health = ServiceHealth::outage;
    QTest::newRow("health") << other;
    other = status;
    other.lastChecked = instant(1001s);
    QTest::newRow("check time") << other;
    other.lastChecked.reset();
    QTest::newRow("no check time") << other;
    other = status;
    other.label = u"partial outage"_s;
    QTest::newRow("only the label, by case") << other;
    other = status;
    other.recoveredUntil = instant(1600s + 1us);
    QTest::newRow("recovery time") << other;
    other.recoveredUntil.reset();
    QTest::newRow("no recovery time") << other;
}

void ModelTest::statusesDifferByEveryField()
{
    QFETCH(ServiceStatus, other);
    const ServiceStatus status{ServiceHealth::degraded, instant(1000s), u"Partial outage"_s, instant(1600s)};
    const ServiceStatus same = status;
    QVERIFY(status == same);
    QVERIFY(!(status == other));
}

void ModelTest::statusesWithoutCheckTimeAreEqual()
{
    const ServiceStatus left{ServiceHealth::outage, std::nullopt, u"Major outage"_s, instant(5s)};
    const ServiceStatus right{ServiceHealth::outage, std::nullopt, u"Major outage"_s, instant(5s)};
    QVERIFY(left == right);
    QVERIFY(ServiceStatus{} == ServiceStatus{});
}

void ModelTest::aServiceThatWasNeverCheckedReadsNotCheckedYet_data()
{
    QTest::addColumn<TimePoint>("now");
    QTest::newRow("epoch") << TimePoint{};
    QTest::newRow("today") << instant(1'770'000'000s);
    QTest::newRow("before the epoch") << instant(-1h);
}

void ModelTest::aServiceThatWasNeverCheckedReadsNotCheckedYet()
{
    QFETCH(TimePoint, now);
    QCOMPARE(RelativeTime::checked(std::nullopt, now), u"Not checked yet"_s);
}

void ModelTest::aCheckReadsItsAge_data()
{
    QTest::addColumn<std::chrono::milliseconds>("elapsed");
    QTest::addColumn<QString>("text");
    const auto row = [](std::chrono::milliseconds elapsed, const QString &text) {
        QTest::addRow("%lld ms", static_cast<long long>(elapsed.count())) << elapsed << text;
    };
    row(0ms, u"Checked 0 seconds ago"_s);
    row(900ms, u"Checked 0 seconds ago"_s);
    row(999ms, u"Checked 0 seconds ago"_s);
    row(1s, u"Checked 1 second ago"_s);
    row(1999ms, u"Checked 1 second ago"_s);
    row(2s, u"Checked 2 seconds ago"_s);
    row(59s, u"Checked 59 seconds ago"_s);
    row(59'990ms, u"Checked 59 seconds ago"_s);
    row(60s, u"Checked 1 minute ago"_s);
    row(119s, u"Checked 1 minute ago"_s);
    row(119'999ms, u"Checked 1 minute ago"_s);
    row(120s, u"Checked 2 minutes ago"_s);
    row(3599s, u"Checked 59 minutes ago"_s);
    row(3'599'999ms, u"Checked 59 minutes ago"_s);
    row(3600s, u"Checked 1 hour ago"_s);
    row(7199s, u"Checked 1 hour ago"_s);
    row(7200s, u"Checked 2 hours ago"_s);
    row(48h, u"Checked 48 hours ago"_s);
    row(12'345h, u"Checked 12345 hours ago"_s);
    row(-1ms, u"Checked 0 seconds ago"_s);
    row(-5s, u"Checked 0 seconds ago"_s);
    row(-48h, u"Checked 0 seconds ago"_s);
}

void ModelTest::aCheckReadsItsAge()
{
    QFETCH(std::chrono::milliseconds, elapsed);
    QFETCH(QString, text);
    for (const TimePoint lastChecked : {TimePoint{}, instant(1'770'000'000s + 250ms), instant(-1h)}) {
        QCOMPARE(RelativeTime::checked(lastChecked, lastChecked + elapsed), text);
    }
}

QTEST_GUILESS_MAIN(ModelTest)
#include "tst_model.moc"
