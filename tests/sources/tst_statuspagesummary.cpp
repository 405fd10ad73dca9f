#include "JsonMutator.h"
#include "ReadingText.h"
#include "VendorDocuments.h"
#include "model/Service.h"
#include "sources/StatuspageSummary.h"

#include <QJsonDocument>
#include <QTest>

using namespace kelvo;
using namespace Qt::StringLiterals;

namespace {

const StatusReading operational{ServiceHealth::operational, u"Operational"_s};
const StatusReading maintenance{ServiceHealth::degraded, u"Maintenance"_s};
const StatusReading degraded{ServiceHealth::degraded, u"Degraded"_s};
const StatusReading partialOutage{ServiceHealth::degraded, u"Partial outage"_s};
const StatusReading majorOutage{ServiceHealth::outage, u"Major outage"_s};

const QLocale english(QLocale::English, QLocale::UnitedStates);
const QLocale turkish(QLocale::Turkish, QLocale::Turkey);

std::optional<StatusReading> readingOf(const QByteArray &body, const QStringList &names,
                                       const QLocale &locale = english)
{
    const auto summary = StatuspageSummary::decode(body);
    return summary ? std::optional(summary->reading(names, locale)) : std::nullopt;
}

StatusReading readingOf(const QJsonObject &document, const QStringList &names, const QLocale &locale = english)
{
    return readingOf(json(document), names, locale).value_or(StatusReading{ServiceHealth::unknown, u"(undecodable)"_s});
}

QStringList componentsOf(ServiceID id)
{
    return std::get<StatuspageSource>(Service::by(id).source).components;
}

/// A small page with these components. Its indicator is "none" by default.
QJsonObject page(const QList<PageComponent> &components, const QString &indicator = u"none"_s)
{
    return shortSummary(indicator, u"The page’s own words"_s, components);
}

QList<PageComponent> named(const QString &name, const QStringList &statuses)
{
    QList<PageComponent> components;
    for (const auto &status : statuses) {
        components.append({name, status});
    }
    return components;
}

/// The smallest document that decodes.
const QByteArray smallest = R"({"status":{"indicator":"none","description":"d"}})";

/// A reference implementation of the rules, independent of the program, on a document that Qt has parsed.
std::optional<StatusReading> expectedReading(const QJsonObject &document, const QStringList &names)
{
    const QJsonValue status = document[u"status"_s];
    const QJsonValue indicator = status[u"indicator"_s];
    const QJsonValue description = status[u"description"_s];
    const QJsonValue components = document[u"components"_s];
    if (!status.isObject() || !indicator.isString() || !description.isString()
        || !(components.isArray() || components.isNull() || components.isUndefined())) {
        return std::nullopt;
    }
    QStringList whole, within;
    for (const auto &component : components.toArray()) {
        if (!component.isObject() || !component[u"name"_s].isString() || !component[u"status"_s].isString()) {
            return std::nullopt;
        }
        const QString name = component[u"name"_s].toString().toCaseFolded();
        bool isWhole = false, isWithin = false;
        for (const auto &wanted : names) {
            isWhole = isWhole || name == wanted.toCaseFolded();
            isWithin = isWithin || name.indexOf(wanted.toCaseFolded()) >= 0;
        }
        if (isWhole) {
            whole.append(component[u"status"_s].toString());
        }
        if (isWithin) {
            within.append(component[u"status"_s].toString());
        }
    }
    const QStringList taken = whole.isEmpty() ? within : whole;
    if (taken.isEmpty()) {
        const QMap<QString, StatusReading> verdicts{{u"none"_s, operational},
                                                    {u"minor"_s, partialOutage},
                                                    {u"major"_s, majorOutage},
                                                    {u"critical"_s, majorOutage}};
        return verdicts.value(indicator.toString(), {ServiceHealth::unknown, description.toString()});
    }
    if (taken.contains(u"major_outage"_s)) {
        return majorOutage;
    }
    if (taken.contains(u"partial_outage"_s)) {
        return partialOutage;
    }
    for (const auto &state : taken) {
        if (state == u"degraded_performance"_s) {
            return degraded;
        }
        if (state == u"under_maintenance"_s) {
            return maintenance;
        }
    }
    return operational;
}

} // namespace

class StatuspageSummaryTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void realisticDocumentsReadOperationalForEveryService_data();
    void realisticDocumentsReadOperationalForEveryService();
    void eachServiceReadsItsOwnComponents_data();
    void eachServiceReadsItsOwnComponents();
    void theIndicatorDecidesWithoutComponents_data();
    void theIndicatorDecidesWithoutComponents();
    void theIndicatorDecidesWhenNoComponentMatches();
    void indicatorsAreComparedExactly();
    void aMaintenanceIndicatorReadsUnknownWithThePagesDescription();
    void aComponentStatusGivesItsVerdict_data();
    void aComponentStatusGivesItsVerdict();
    void theWorstComponentDecides_data();
    void theWorstComponentDecides();
    void thePrecedenceHoldsInEveryOrder();
    void anOperationalComponentOverridesACriticalPage();
    void anEqualNameMatchesIgnoringCase();
    void aContainingNameMatchesOnlyWithoutAnEqualOne();
    void aComponentMustContainTheNameNotTheReverse();
    void aComponentListedTwiceCountsTwice();
    void aComponentThatMatchesTwoNamesKeepsItsPosition();
    void anyOfTheNamesMatches();
    void equalNamesMatchInATurkishLocaleToo();
    void containedNamesMatchByTurkishCaseInATurkishLocale();
    void aByteOrderMarkIsPartOfAText_data();
    void aByteOrderMarkIsPartOfAText();
    void aWellFormedDocumentIsRead_data();
    void aWellFormedDocumentIsRead();
    void aBodyThatIsNotASummaryIsUnreadable_data();
    void aBodyThatIsNotASummaryIsUnreadable();
    void aWrongTypeAnywhereMakesTheDocumentUnreadable_data();
    void aWrongTypeAnywhereMakesTheDocumentUnreadable();
    void aComponentWithoutAStatusMakesTheDocumentUnreadable();
    void everyTruncatedDocumentIsUnreadable();
    void aHugeDocumentIsRead();
    void mutatedDocumentsReadAsTheReferenceSays();
    void mutatedBytesAreNeverMisread();
};

void StatuspageSummaryTest::realisticDocumentsReadOperationalForEveryService_data()
{
    QTest::addColumn<QJsonObject>("document");
    QTest::addColumn<QList<ServiceID>>("services");
    const QString words = u"All Systems Operational"_s;
    const QList<ServiceID> anthropic{ServiceID::claude, ServiceID::anthropicAPI, ServiceID::claudeCode};
    const QList<ServiceID> openai{ServiceID::chatgpt, ServiceID::openaiAPI};
    QTest::newRow("Claude") << longSummary(u"none"_s, words, claudeComponents()) << anthropic;
    QTest::newRow("OpenAI") << shortSummary(u"none"_s, words, openaiComponents()) << openai;
    QTest::newRow("Cursor") << longSummary(u"none"_s, words, cursorComponents()) << QList{ServiceID::cursor};
    QTest::newRow("GitHub") << longSummary(u"none"_s, words, githubComponents()) << QList{ServiceID::copilot};
}

void StatuspageSummaryTest::realisticDocumentsReadOperationalForEveryService()
{
    QFETCH(QJsonObject, document);
    QFETCH(QList<ServiceID>, services);
    for (const auto id : services) {
        QCOMPARE(readingOf(document, componentsOf(id)), operational);
        // The components of the service are found, so the indicator of the page is ignored.
        document[u"status"_s] = QJsonObject{{u"indicator"_s, u"major"_s}, {u"description"_s, u"Major System Outage"_s}};
        QCOMPARE(readingOf(document, componentsOf(id)), operational);
    }
}

void StatuspageSummaryTest::eachServiceReadsItsOwnComponents_data()
{
    QTest::addColumn<QList<PageComponent>>("components");
    QTest::addColumn<QString>("troubled");
    QTest::addColumn<QList<ServiceID>>("affected");
    QTest::addColumn<QList<ServiceID>>("unaffected");
    using Ids = QList<ServiceID>;
    QTest::newRow("claude.ai") << claudeComponents() << u"claude.ai"_s << Ids{ServiceID::claude}
                               << Ids{ServiceID::anthropicAPI, ServiceID::claudeCode};
    QTest::newRow("the API with a remark")
        << claudeComponents() << u"Claude API (api.anthropic.com)"_s << Ids{ServiceID::anthropicAPI}
        << Ids{ServiceID::claude, ServiceID::claudeCode};
    QTest::newRow("Claude Code") << claudeComponents() << u"Claude Code"_s << Ids{ServiceID::claudeCode}
                                 << Ids{ServiceID::claude, ServiceID::anthropicAPI};
    QTest::newRow("Claude for Government") << claudeComponents() << u"Claude for Government"_s << Ids{}
                                           << Ids{ServiceID::claude, ServiceID::anthropicAPI, ServiceID::claudeCode};
    QTest::newRow("Login") << openaiComponents() << u"Login"_s << Ids{ServiceID::chatgpt} << Ids{ServiceID::openaiAPI};
    QTest::newRow("Conversations") << openaiComponents() << u"Conversations"_s << Ids{ServiceID::chatgpt}
                                   << Ids{ServiceID::openaiAPI};
    QTest::newRow("Embeddings") << openaiComponents() << u"Embeddings"_s << Ids{ServiceID::openaiAPI}
                                << Ids{ServiceID::chatgpt};
    QTest::newRow("Sora") << openaiComponents() << u"Sora"_s << Ids{} << Ids{ServiceID::chatgpt, ServiceID::openaiAPI};
    QTest::newRow("cursor.com") << cursorComponents() << u"cursor.com"_s << Ids{ServiceID::cursor} << Ids{};
    QTest::newRow("CLI") << cursorComponents() << u"CLI"_s << Ids{} << Ids{ServiceID::cursor};
    QTest::newRow("Copilot") << githubComponents() << u"Copilot"_s << Ids{ServiceID::copilot} << Ids{};
    QTest::newRow("Copilot AI Model Providers")
        << githubComponents() << u"Copilot AI Model Providers"_s << Ids{} << Ids{ServiceID::copilot};
}

void StatuspageSummaryTest::eachServiceReadsItsOwnComponents()
{
    QFETCH(QList<PageComponent>, components);
    QFETCH(QString, troubled);
    QFETCH(QList<ServiceID>, affected);
    QFETCH(QList<ServiceID>, unaffected);
    const auto list = with(components, troubled, u"partial_outage"_s);
    for (const auto &document :
         {longSummary(u"minor"_s, u"Partial System Outage"_s, list), shortSummary(u"minor"_s, u"d"_s, list)}) {
        for (const auto id : affected) {
            QCOMPARE(readingOf(document, componentsOf(id)), partialOutage);
        }
        for (const auto id : unaffected) {
            QCOMPARE(readingOf(document, componentsOf(id)), operational);
        }
    }
}

void StatuspageSummaryTest::theIndicatorDecidesWithoutComponents_data()
{
    QTest::addColumn<QString>("indicator");
    QTest::addColumn<StatusReading>("expected");
    QTest::newRow("none") << u"none"_s << operational;
    QTest::newRow("minor") << u"minor"_s << partialOutage;
    QTest::newRow("major") << u"major"_s << majorOutage;
    QTest::newRow("critical") << u"critical"_s << majorOutage;
    const StatusReading other{ServiceHealth::unknown, u"Words of the page"_s};
    QTest::newRow("maintenance") << u"maintenance"_s << other;
    QTest::newRow("empty") << u""_s << other;
    QTest::newRow("unheard of") << u"catastrophic"_s << other;
}

void StatuspageSummaryTest::theIndicatorDecidesWithoutComponents()
{
    QFETCH(QString, indicator);
    QFETCH(StatusReading, expected);
    auto document = shortSummary(indicator, u"Words of the page"_s, {});
    QCOMPARE(readingOf(document, {u"Claude Code"_s}), expected);
    document[u"components"_s] = QJsonValue::Null;
    QCOMPARE(readingOf(document, {u"Claude Code"_s}), expected);
    document.remove(u"components"_s);
    QCOMPARE(readingOf(document, {u"Claude Code"_s}), expected);
}

void StatuspageSummaryTest::theIndicatorDecidesWhenNoComponentMatches()
{
    const auto document = page({{u"API"_s, u"operational"_s}}, u"critical"_s);
    QCOMPARE(readingOf(document, {u"Claude Code"_s}), majorOutage);
    QCOMPARE(readingOf(document, {}), majorOutage);
}

void StatuspageSummaryTest::indicatorsAreComparedExactly()
{
    for (const auto &indicator : {u"None"_s, u"NONE"_s, u"none "_s, u"Major"_s}) {
        QCOMPARE(readingOf(page({}, indicator), {u"x"_s}).health, ServiceHealth::unknown);
    }
}

void StatuspageSummaryTest::aMaintenanceIndicatorReadsUnknownWithThePagesDescription()
{
    const QString words = u"Service Under Maintenance – 30 min"_s;
    QCOMPARE(readingOf(shortSummary(u"maintenance"_s, words, {}), {u"x"_s}),
             (StatusReading{ServiceHealth::unknown, words}));
    QCOMPARE(readingOf(shortSummary(u"maintenance"_s, u""_s, {}), {u"x"_s}),
             (StatusReading{ServiceHealth::unknown, u""_s}));
}

void StatuspageSummaryTest::aComponentStatusGivesItsVerdict_data()
{
    QTest::addColumn<QString>("status");
    QTest::addColumn<StatusReading>("expected");
    QTest::newRow("operational") << u"operational"_s << operational;
    QTest::newRow("degraded_performance") << u"degraded_performance"_s << degraded;
    QTest::newRow("partial_outage") << u"partial_outage"_s << partialOutage;
    QTest::newRow("major_outage") << u"major_outage"_s << majorOutage;
    QTest::newRow("under_maintenance") << u"under_maintenance"_s << maintenance;
    QTest::newRow("unheard of") << u"on_fire"_s << operational;
    QTest::newRow("empty") << u""_s << operational;
    QTest::newRow("another case") << u"Major_Outage"_s << operational;
    QTest::newRow("blank after") << u"major_outage "_s << operational;
    QTest::newRow("full_outage") << u"full_outage"_s << operational;
}

void StatuspageSummaryTest::aComponentStatusGivesItsVerdict()
{
    QFETCH(QString, status);
    QFETCH(StatusReading, expected);
    QCOMPARE(readingOf(page({{u"IDE"_s, status}}), {u"IDE"_s}), expected);
    // The indicator of the page is ignored.
    QCOMPARE(readingOf(page({{u"IDE"_s, status}}, u"critical"_s), {u"IDE"_s}), expected);
}

void StatuspageSummaryTest::theWorstComponentDecides_data()
{
    QTest::addColumn<QStringList>("statuses");
    QTest::addColumn<StatusReading>("expected");
    const QString up = u"operational"_s, slow = u"degraded_performance"_s, works = u"under_maintenance"_s,
                  part = u"partial_outage"_s, down = u"major_outage"_s, odd = u"on_fire"_s;
    QTest::newRow("maintenance, degraded") << QStringList{works, slow} << maintenance;
    QTest::newRow("degraded, maintenance") << QStringList{slow, works} << degraded;
    QTest::newRow("degraded, partial") << QStringList{slow, part} << partialOutage;
    QTest::newRow("partial, degraded") << QStringList{part, slow} << partialOutage;
    QTest::newRow("maintenance, partial") << QStringList{works, part} << partialOutage;
    QTest::newRow("partial, maintenance") << QStringList{part, works} << partialOutage;
    QTest::newRow("major first") << QStringList{down, part, slow, up} << majorOutage;
    QTest::newRow("major last") << QStringList{up, slow, works, part, down} << majorOutage;
    QTest::newRow("all operational") << QStringList{up, up, up} << operational;
    QTest::newRow("operational does not mend") << QStringList{slow, up} << degraded;
    QTest::newRow("unknown does not mend") << QStringList{part, odd} << partialOutage;
    QTest::newRow("unknown does not hurt") << QStringList{odd, up} << operational;
    QTest::newRow("first of three") << QStringList{up, works, slow, works} << maintenance;
}

void StatuspageSummaryTest::theWorstComponentDecides()
{
    QFETCH(QStringList, statuses);
    QFETCH(StatusReading, expected);
    QCOMPARE(readingOf(page(named(u"IDE"_s, statuses)), {u"IDE"_s}), expected);
}

void StatuspageSummaryTest::thePrecedenceHoldsInEveryOrder()
{
    const QStringList all{u"degraded_performance"_s, u"major_outage"_s, u"operational"_s, u"partial_outage"_s,
                          u"under_maintenance"_s};
    // Every subset of the five statuses, in every order.
    for (unsigned selection = 1; selection < 32; ++selection) {
        QStringList statuses;
        for (unsigned i = 0; i < 5; ++i) {
            if (selection & (1U << i)) {
                statuses.append(all.at(i));
            }
        }
        do {
            const StatusReading reading = readingOf(page(named(u"IDE"_s, statuses)), {u"IDE"_s});
            const auto slow = statuses.indexOf(all.at(0)), works = statuses.indexOf(all.at(4));
            StatusReading expected = operational;
            if (statuses.contains(all.at(1))) {
                expected = majorOutage;
            } else if (statuses.contains(all.at(3))) {
                expected = partialOutage;
            } else if (slow >= 0 && (works < 0 || slow < works)) {
                expected = degraded;
            } else if (works >= 0) {
                expected = maintenance;
            }
            QVERIFY2(reading == expected, qPrintable(statuses.join(u", "_s)));
        } while (std::next_permutation(statuses.begin(), statuses.end()));
    }
}

void StatuspageSummaryTest::anOperationalComponentOverridesACriticalPage()
{
    QCOMPARE(readingOf(page({{u"Claude Code"_s, u"operational"_s}}, u"critical"_s), {u"Claude Code"_s}), operational);
    QCOMPARE(readingOf(page({{u"Claude Code"_s, u"operational"_s}}, u"maintenance"_s), {u"Claude Code"_s}),
             operational);
}

void StatuspageSummaryTest::anEqualNameMatchesIgnoringCase()
{
    for (const auto &name : {u"claude code"_s, u"CLAUDE CODE"_s, u"Claude Code"_s, u"cLAUDE cODE"_s}) {
        // An equal name matches, so the name with a remark is ignored.
        const auto document = page(
            {{u"Claude Code (terminal)"_s, u"major_outage"_s}, {name, u"degraded_performance"_s}});
        QCOMPARE(readingOf(document, {u"Claude Code"_s}), degraded);
    }
}

void StatuspageSummaryTest::aContainingNameMatchesOnlyWithoutAnEqualOne()
{
    const PageComponent remarked{u"Claude Code (terminal)"_s, u"major_outage"_s};
    QCOMPARE(readingOf(page({remarked}), {u"Claude Code"_s}), majorOutage);
    QCOMPARE(readingOf(page({remarked, {u"Claude Code"_s}}), {u"Claude Code"_s}), operational);
    // When one of the names is equal, the other names are not searched within longer names either.
    QCOMPARE(readingOf(page({remarked, {u"IDE"_s}}), {u"Claude Code"_s, u"IDE"_s}), operational);
    QCOMPARE(readingOf(page({{u"the CLAUDE code thing"_s, u"partial_outage"_s}}), {u"Claude Code"_s}), partialOutage);
}

void StatuspageSummaryTest::aComponentMustContainTheNameNotTheReverse()
{
    QCOMPARE(readingOf(page({{u"Code"_s, u"major_outage"_s}}, u"none"_s), {u"Claude Code"_s}), operational);
    QCOMPARE(readingOf(page({{u"Code"_s, u"operational"_s}}, u"minor"_s), {u"Claude Code"_s}), partialOutage);
    QCOMPARE(readingOf(page({{u""_s, u"major_outage"_s}}, u"minor"_s), {u"Claude Code"_s}), partialOutage);
}

void StatuspageSummaryTest::aComponentListedTwiceCountsTwice()
{
    QCOMPARE(readingOf(page({{u"Login"_s, u"operational"_s}, {u"Login"_s, u"major_outage"_s}}), {u"Login"_s}),
             majorOutage);
}

void StatuspageSummaryTest::aComponentThatMatchesTwoNamesKeepsItsPosition()
{
    // "Login to IDE" contains both names. The page order decides, not the order of the names.
    const auto document = page(
        {{u"Login to IDE"_s, u"under_maintenance"_s}, {u"IDE plugins"_s, u"degraded_performance"_s}});
    QCOMPARE(readingOf(document, {u"IDE"_s, u"Login"_s}), maintenance);
    QCOMPARE(readingOf(document, {u"Login"_s, u"IDE"_s}), maintenance);
}

void StatuspageSummaryTest::anyOfTheNamesMatches()
{
    const auto document = page({{u"cursor.com"_s, u"degraded_performance"_s}, {u"IDE"_s, u"under_maintenance"_s}});
    QCOMPARE(readingOf(document, {u"IDE"_s, u"cursor.com"_s}), degraded);
    QCOMPARE(readingOf(document, {u"IDE"_s}), maintenance);
}

void StatuspageSummaryTest::equalNamesMatchInATurkishLocaleToo()
{
    QCOMPARE(readingOf(page({{u"ide"_s, u"major_outage"_s}}), {u"IDE"_s}, turkish), majorOutage);
    QCOMPARE(readingOf(page({{u"CLAUDE.AI"_s, u"major_outage"_s}}), {u"claude.ai"_s}, turkish), majorOutage);
    for (const auto &service : Service::catalog()) {
        if (const auto *source = std::get_if<StatuspageSource>(&service.source)) {
            for (const auto &name : source->components) {
                QCOMPARE(readingOf(page({{name.toUpper(), u"major_outage"_s}}), {name}, turkish), majorOutage);
            }
        }
    }
}

void StatuspageSummaryTest::containedNamesMatchByTurkishCaseInATurkishLocale()
{
    // In Turkish the lower case of I is ı, and that of İ is i.
    const auto small = page({{u"the ide itself"_s, u"major_outage"_s}});
    QCOMPARE(readingOf(small, {u"IDE"_s}, english), majorOutage);
    QCOMPARE(readingOf(small, {u"IDE"_s}, turkish), operational);
    const auto dotless = page({{u"the ıde itself"_s, u"major_outage"_s}});
    QCOMPARE(readingOf(dotless, {u"IDE"_s}, english), operational);
    QCOMPARE(readingOf(dotless, {u"IDE"_s}, turkish), majorOutage);
    // The default is the user's locale.
    const QLocale before;
    QLocale::setDefault(turkish);
    const auto reading = StatuspageSummary::decode(json(dotless))->reading({u"IDE"_s});
    QLocale::setDefault(before);
    QCOMPARE(reading, majorOutage);
    // Names that are spelt as the vendors spell them are found in every locale.
    const auto api = page({{u"Claude API (api.anthropic.com)"_s, u"major_outage"_s}});
    QCOMPARE(readingOf(api, {u"Claude API"_s}, turkish), majorOutage);
}

void StatuspageSummaryTest::aByteOrderMarkIsPartOfAText_data()
{
    QTest::addColumn<QByteArray>("mark");
    QTest::newRow("in UTF-8") << QByteArray("\xEF\xBB\xBF");
    QTest::newRow("escaped") << QByteArray(R"(\uFEFF)");
}

void StatuspageSummaryTest::aByteOrderMarkIsPartOfAText()
{
    QFETCH(QByteArray, mark);
    const auto indicator = StatuspageSummary::decode(R"({"status":{"indicator":")" + mark
                                                     + R"(none","description":"d"}})");
    QVERIFY(indicator);
    QCOMPARE(indicator->status.indicator, u"\uFEFFnone"_s);
    QVERIFY(indicator->reading({}) == (StatusReading{ServiceHealth::unknown, u"d"_s}));

    const auto component = StatuspageSummary::decode(
        R"({"status":{"indicator":"none","description":"d"},"components":[{"name":"A","status":")" + mark
        + R"(major_outage"}]})");
    QVERIFY(component);
    QVERIFY(component->reading({u"A"_s}) == (StatusReading{ServiceHealth::operational, u"Operational"_s}));
}

void StatuspageSummaryTest::aWellFormedDocumentIsRead_data()
{
    QTest::addColumn<QByteArray>("body");
    QTest::newRow("smallest") << smallest;
    QTest::newRow("byte-order mark") << "\xEF\xBB\xBF" + smallest;
    QTest::newRow("blanks around") << " \r\n\t" + smallest + "\n\n";
    QTest::newRow("byte-order mark and blanks") << "\xEF\xBB\xBF \n" + smallest;
    QTest::newRow("keys escaped") << QByteArray(R"({"st\u0061tus":{"indic\u0061tor":"n\u006fne","description":"d"}})");
    QTest::newRow("other keys of any type")
        << QByteArray(R"({"a":1,"b":[{}],"incidents":7,"status":{"x":null,"indicator":"none","description":"d"}})");
    QTest::newRow("components null") << QByteArray(
        R"({"components":null,"status":{"indicator":"none","description":"d"}})");
    QTest::newRow("components empty") << QByteArray(
        R"({"components":[],"status":{"indicator":"none","description":"d"}})");
    QTest::newRow("text beyond the first plane")
        << QByteArray(R"({"page":"\ud83d\ude00","status":{"indicator":"none","description":"d"}})");
    QTest::newRow("components spelt otherwise")
        << QByteArray(R"({"Components":[1],"status":{"indicator":"none","description":"d"}})");
}

void StatuspageSummaryTest::aWellFormedDocumentIsRead()
{
    QFETCH(QByteArray, body);
    const auto summary = withExactMemory(body, &StatuspageSummary::decode);
    QVERIFY(summary);
    QCOMPARE(summary->status.indicator, u"none"_s);
    QCOMPARE(summary->status.description, u"d"_s);
    QVERIFY(summary->components.empty());
}

void StatuspageSummaryTest::aBodyThatIsNotASummaryIsUnreadable_data()
{
    QTest::addColumn<QByteArray>("body");
    QTest::newRow("nothing at all") << QByteArray();
    QTest::newRow("empty") << QByteArray("");
    QTest::newRow("blanks") << QByteArray(" \n");
    QTest::newRow("byte-order mark alone") << QByteArray("\xEF\xBB\xBF");
    QTest::newRow("two byte-order marks") << "\xEF\xBB\xBF\xEF\xBB\xBF" + smallest;
    QTest::newRow("byte-order mark after") << smallest + "\xEF\xBB\xBF";
    QTest::newRow("error page") << QByteArray("<!DOCTYPE html><html><head><title>503</title></head><body>"
                                              "<h1>Service Unavailable</h1></body></html>");
    QTest::newRow("captive portal") << QByteArray(
        "<html><head><meta http-equiv=\"refresh\" content=\"0;url=http://wifi.example/login\"></head>"
        "<body>{\"status\":{\"indicator\":\"none\",\"description\":\"d\"}}</body></html>");
    QTest::newRow("plain text") << QByteArray("upstream connect error");
    QTest::newRow("null") << QByteArray("null");
    QTest::newRow("number") << QByteArray("7");
    QTest::newRow("text") << QByteArray("\"none\"");
    QTest::newRow("list") << "[" + smallest + "]";
    QTest::newRow("empty object") << QByteArray("{}");
    QTest::newRow("other object") << QByteArray(R"({"error":"not found"})");
    QTest::newRow("status at the wrong level")
        << QByteArray(R"({"page":{"status":{"indicator":"none","description":"d"}}})");
    QTest::newRow("keys in another case") << QByteArray(R"({"Status":{"indicator":"none","description":"d"}})");
    QTest::newRow("no indicator") << QByteArray(R"({"status":{"description":"d"}})");
    QTest::newRow("no description") << QByteArray(R"({"status":{"indicator":"none"}})");
    QTest::newRow("twice") << smallest + smallest;
    QTest::newRow("something after") << smallest + "x";
    QTest::newRow("comma at the end") << QByteArray(R"({"status":{"indicator":"none","description":"d",}})");
    QTest::newRow("single quotes") << QByteArray("{'status':{'indicator':'none','description':'d'}}");
    QTest::newRow("comment") << "/* */" + smallest;
    QTest::newRow("NaN") << QByteArray(R"({"x":NaN,"status":{"indicator":"none","description":"d"}})");
    QTest::newRow("leading zero") << QByteArray(R"({"x":01,"status":{"indicator":"none","description":"d"}})");
    QTest::newRow("raw line break in a text")
        << QByteArray("{\"status\":{\"indicator\":\"none\",\"description\":\"d\n\"}}");
    QTest::newRow("NUL after") << QByteArray(smallest).append('\0');
    QTest::newRow("not UTF-8") << QByteArray("{\"status\":{\"indicator\":\"none\",\"description\":\"\xE9\"}}");
    QTest::newRow("half a surrogate pair in UTF-8")
        << QByteArray("{\"status\":{\"indicator\":\"none\",\"description\":\"\xED\xA0\x80\"}}");
    QTest::newRow("deeply nested") << QByteArray(200'000, '[');
    QTest::newRow("deeply nested and closed") << QByteArray(200'000, '[') + QByteArray(200'000, ']');
    QTest::newRow("binary") << QByteArray::fromHex("1f8b0800000000000003abe6020043bfa6a302000000");
}

void StatuspageSummaryTest::aBodyThatIsNotASummaryIsUnreadable()
{
    QFETCH(QByteArray, body);
    QVERIFY(!withExactMemory(body, &StatuspageSummary::decode));
    QVERIFY(!StatuspageSummary::decode(body));
}

void StatuspageSummaryTest::aWrongTypeAnywhereMakesTheDocumentUnreadable_data()
{
    QTest::addColumn<QByteArray>("body");
    const QList<QByteArray> texts{"status.indicator", "status.description", "component.name", "component.status"};
    const QList<QByteArray> values{"null", "true", "7", "1.5", "[]", "{}", "[\"none\"]", "\"none\""};
    for (const auto &value : values) {
        const bool isText = value.startsWith('"');
        QTest::addRow("status is %s", value.constData()) << "{\"status\":" + value + "}";
        if (value != "null" && value != "[]") {
            QTest::addRow("components is %s", value.constData())
                << smallest.chopped(1) + ",\"components\":" + value + "}";
        }
        QTest::addRow("component is %s", value.constData())
            << smallest.chopped(1) + R"(,"components":[{"name":"a","status":"b"},)" + value + "]}";
        for (const auto &place : texts) {
            if (isText) {
                continue;
            }
            const auto at = [&](const QByteArray &name) { return place == name ? value : QByteArray("\"none\""); };
            QTest::addRow("%s is %s", place.constData(), value.constData()) << "{\"status\":{\"indicator\":"
                    + at("status.indicator") + ",\"description\":" + at("status.description")
                    + "},\"components\":[{\"name\":\"a\",\"status\":\"b\"},{\"name\":" + at("component.name")
                    + ",\"status\":" + at("component.status") + "}]}";
        }
    }
}

void StatuspageSummaryTest::aWrongTypeAnywhereMakesTheDocumentUnreadable()
{
    QFETCH(QByteArray, body);
    // The document is well formed, so it is refused because of the type.
    QVERIFY(!QJsonDocument::fromJson(body).isNull());
    QVERIFY(!StatuspageSummary::decode(body));
}

void StatuspageSummaryTest::aComponentWithoutAStatusMakesTheDocumentUnreadable()
{
    auto document = longSummary(u"none"_s, u"All Systems Operational"_s, claudeComponents());
    for (const auto &key : {u"name"_s, u"status"_s}) {
        auto components = document[u"components"_s].toArray();
        auto last = components.last().toObject();
        last.remove(key);
        components.replace(components.size() - 1, last);
        auto spoilt = document;
        spoilt[u"components"_s] = components;
        QVERIFY(StatuspageSummary::decode(json(document)));
        QVERIFY(!StatuspageSummary::decode(json(spoilt)));
    }
}

void StatuspageSummaryTest::everyTruncatedDocumentIsUnreadable()
{
    const QByteArray whole = json(shortSummary(u"none"_s, u"d"_s, openaiComponents()));
    for (qsizetype length = 0; length < whole.size(); ++length) {
        QVERIFY(!withExactMemory(whole.left(length), &StatuspageSummary::decode));
    }
    QVERIFY(withExactMemory(whole, &StatuspageSummary::decode));
}

void StatuspageSummaryTest::aHugeDocumentIsRead()
{
    auto components = QList<PageComponent>(20'000, {u"Another product"_s, u"major_outage"_s});
    components.append({u"IDE"_s, u"partial_outage"_s});
    const QString words = u"long "_s.repeated(200'000);
    const auto document = longSummary(u"maintenance"_s, words, components);
    QVERIFY(json(document).size() > 5'000'000);
    QCOMPARE(readingOf(document, {u"IDE"_s}), partialOutage);
    QCOMPARE(readingOf(document, {u"nothing of the kind"_s}), (StatusReading{ServiceHealth::unknown, words}));
}

void StatuspageSummaryTest::mutatedDocumentsReadAsTheReferenceSays()
{
    const QStringList texts{u"none"_s,         u"minor"_s,         u"major"_s,
                            u"maintenance"_s,  u"operational"_s,   u"degraded_performance"_s,
                            u"major_outage"_s, u"IDE"_s,           u"partial_outage"_s,
                            u"cursor.com"_s,   u"My Cursor.com"_s, u"under_maintenance"_s,
                            u"status"_s,       u"components"_s,    u"ide (new)"_s};
    const QStringList names{u"IDE"_s, u"cursor.com"_s};
    JsonMutator mutator(20'260'105, texts);
    const QJsonObject whole[] = {
        longSummary(u"minor"_s, u"words"_s, cursorComponents()),
        shortSummary(u"critical"_s, u"words"_s, with(cursorComponents(), u"IDE"_s, u"degraded_performance"_s)),
        shortSummary(u"none"_s, u"words"_s, {{u"The IDE"_s, u"under_maintenance"_s}, {u"ide 2"_s}}),
        QJsonDocument::fromJson(smallest).object(),
    };
    QMap<QString, int> seen;
    for (int i = 0; i < 20'000; ++i) {
        const QJsonValue damaged = mutator.mutated(QJsonValue(whole[i % 4]));
        const QByteArray body = json(damaged);
        const auto reading = withExactMemory(body, [&](const QByteArray &bytes) {
            const auto summary = StatuspageSummary::decode(bytes);
            return summary ? std::optional(summary->reading(names, english)) : std::nullopt;
        });
        QVERIFY2(reading == expectedReading(damaged.toObject(), names), body.constData());
        ++seen[reading ? rawValue(reading->health) : u"unreadable"_s];
    }
    // Enough documents of every kind remain for the comparison to be meaningful.
    QCOMPARE(seen.size(), 5);
    for (const int count : seen) {
        QVERIFY(count > 200);
    }
}

void StatuspageSummaryTest::mutatedBytesAreNeverMisread()
{
    const QStringList names{u"IDE"_s, u"cursor.com"_s};
    JsonMutator mutator(59, {u"x"_s});
    const QByteArray whole[] = {
        json(longSummary(u"minor"_s, u"words"_s, {{u"IDE"_s, u"partial_outage"_s}})),
        json(shortSummary(u"critical"_s, u"words"_s, cursorComponents())),
        "\xEF\xBB\xBF" + smallest,
    };
    int decoded = 0, refused = 0;
    for (int i = 0; i < 30'000; ++i) {
        const QByteArray body = mutator.mutated(whole[i % 3]);
        const auto reading = withExactMemory(body, [&](const QByteArray &bytes) {
            const auto summary = StatuspageSummary::decode(bytes);
            return summary ? std::optional(summary->reading(names, english)) : std::nullopt;
        });
        if (!reading) {
            ++refused;
            continue;
        }
        const QByteArray text = body.startsWith("\xEF\xBB\xBF") ? body.mid(3) : body;
        QVERIFY2(!QJsonDocument::fromJson(text).isNull(), body.constData());
        if (!mayRepeatAKey(text)) {
            ++decoded;
            QVERIFY2(reading == expectedReading(QJsonDocument::fromJson(text).object(), names), body.constData());
        }
    }
    QVERIFY(decoded > 3000);
    QVERIFY(refused > 3000);
}

QTEST_GUILESS_MAIN(StatuspageSummaryTest)
#include "tst_statuspagesummary.moc"
