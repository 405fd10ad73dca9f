#include "JsonMutator.h"
#include "ReadingText.h"
#include "VendorDocuments.h"
#include "sources/GoogleIncidentFeed.h"

#include <QTest>

using namespace kelvo;
using namespace Qt::StringLiterals;

namespace {

const StatusReading operational{ServiceHealth::operational, u"Operational"_s};
const StatusReading disruption{ServiceHealth::degraded, u"Service disruption"_s};
const StatusReading outage{ServiceHealth::outage, u"Service outage"_s};

const QString gemini = u"Gemini"_s;

using Reading = std::optional<StatusReading>;

Reading readingOf(const QByteArray &body, const QString &product = gemini)
{
    return withExactMemory(body, [&](const QByteArray &bytes) { return GoogleIncidentFeed::reading(bytes, product); });
}

Reading readingOf(const QJsonArray &feed)
{
    return readingOf(json(feed));
}

/// Returns the incident with another value for `key`.
QJsonObject with(QJsonObject incident, const QString &key, const QJsonValue &value)
{
    incident.insert(key, value);
    return incident;
}

QJsonObject without(QJsonObject incident, const QString &key)
{
    incident.remove(key);
    return incident;
}

/// A reference implementation of the rules, independent of the program.
Reading expectedReading(const QJsonValue &document)
{
    if (!document.isArray()) {
        return std::nullopt;
    }
    QList<QJsonObject> matching;
    for (const auto &item : document.toArray()) {
        if (!item.isObject()) {
            return std::nullopt;
        }
        const QJsonObject incident = item.toObject();
        bool isList = incident[u"affected_products"_s].isArray();
        bool names = false;
        for (const auto &product : incident[u"affected_products"_s].toArray()) {
            isList = isList && product.isObject();
            names = names || product[u"title"_s] == QJsonValue(gemini);
        }
        if (!incident.keys().contains(u"end"_s) && isList && names) {
            matching.append(incident);
        }
    }
    if (matching.isEmpty()) {
        return operational;
    }
    const QJsonObject first = matching.first();
    const bool isOut = first.keys().contains(u"currently_affected_locations"_s)
        || first[u"severity"_s] == QJsonValue(u"high"_s);
    return isOut ? outage : disruption;
}

} // namespace

class GoogleIncidentFeedTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void anEmptyFeedReadsOperational();
    void aCurrentIncidentIsJudgedBySeverityAndLocations_data();
    void aCurrentIncidentIsJudgedBySeverityAndLocations();
    void anIncidentWithAnEndIsIgnored_data();
    void anIncidentWithAnEndIsIgnored();
    void aMalformedIncidentIsSkipped_data();
    void aMalformedIncidentIsSkipped();
    void theFirstCurrentIncidentDecides();
    void titlesAreComparedExactly_data();
    void titlesAreComparedExactly();
    void aProductIsFoundAnywhereInTheList();
    void anotherProductCanBeRead();
    void manyEndedIncidentsReadOperational();
    void aBodyThatIsNotAFeedIsUnreadable_data();
    void aBodyThatIsNotAFeedIsUnreadable();
    void aBodyThatIsAFeedIsRead_data();
    void aBodyThatIsAFeedIsRead();
    void everyTruncatedFeedIsUnreadable();
    void mutatedDocumentsReadAsTheReferenceSays();
    void mutatedBytesAreNeverMisread();
};

void GoogleIncidentFeedTest::anEmptyFeedReadsOperational()
{
    QCOMPARE(readingOf("[]"), Reading(operational));
    QCOMPARE(readingOf(" [\n] "), Reading(operational));
}

void GoogleIncidentFeedTest::aCurrentIncidentIsJudgedBySeverityAndLocations_data()
{
    QTest::addColumn<QJsonObject>("incident");
    QTest::addColumn<StatusReading>("expected");
    const auto incident = currentIncident(gemini);
    const auto locations = u"currently_affected_locations"_s, severity = u"severity"_s;
    QTest::newRow("severity medium, no locations key") << incident << disruption;
    QTest::newRow("severity low") << with(incident, severity, u"low"_s) << disruption;
    QTest::newRow("no severity") << without(incident, severity) << disruption;
    QTest::newRow("severity high") << with(incident, severity, u"high"_s) << outage;
    QTest::newRow("severity in another case") << with(incident, severity, u"High"_s) << disruption;
    QTest::newRow("severity with a blank") << with(incident, severity, u"high "_s) << disruption;
    QTest::newRow("severity null") << with(incident, severity, QJsonValue::Null) << disruption;
    QTest::newRow("severity a number") << with(incident, severity, 3) << disruption;
    QTest::newRow("severity a list of high") << with(incident, severity, QJsonArray{u"high"_s}) << disruption;
    QTest::newRow("locations empty") << with(incident, locations, QJsonArray{}) << outage;
    QTest::newRow("locations null") << with(incident, locations, QJsonValue::Null) << outage;
    QTest::newRow("locations false") << with(incident, locations, false) << outage;
    QTest::newRow("locations listed") << with(
        incident, locations, QJsonArray{QJsonObject{{u"title"_s, u"Global"_s}, {u"id"_s, u"global"_s}}})
                                      << outage;
    QTest::newRow("locations in another case")
        << with(incident, u"Currently_Affected_Locations"_s, QJsonArray{}) << disruption;
    QTest::newRow("an outage by its impact only")
        << with(incident, u"status_impact"_s, u"SERVICE_OUTAGE"_s) << disruption;
    QTest::newRow("nothing but the products")
        << QJsonObject{{u"affected_products"_s, incident[u"affected_products"_s]}} << disruption;
}

void GoogleIncidentFeedTest::aCurrentIncidentIsJudgedBySeverityAndLocations()
{
    QFETCH(QJsonObject, incident);
    QFETCH(StatusReading, expected);
    QCOMPARE(readingOf(QJsonArray{incident}), Reading(expected));
    QCOMPARE(readingOf(QJsonArray{endedIncident(gemini), currentIncident(u"Gmail"_s), incident}), Reading(expected));
}

void GoogleIncidentFeedTest::anIncidentWithAnEndIsIgnored_data()
{
    QTest::addColumn<QJsonValue>("end");
    QTest::newRow("time") << QJsonValue(u"2026-01-05T08:59:02+00:00"_s);
    QTest::newRow("null") << QJsonValue(QJsonValue::Null);
    QTest::newRow("false") << QJsonValue(false);
    QTest::newRow("empty text") << QJsonValue(u""_s);
    QTest::newRow("object") << QJsonValue(QJsonObject{});
}

void GoogleIncidentFeedTest::anIncidentWithAnEndIsIgnored()
{
    QFETCH(QJsonValue, end);
    auto incident = with(currentIncident(gemini), u"severity"_s, u"high"_s);
    incident = with(incident, u"currently_affected_locations"_s, QJsonArray{});
    QCOMPARE(readingOf(QJsonArray{incident}), Reading(outage));
    QCOMPARE(readingOf(QJsonArray{with(incident, u"end"_s, end)}), Reading(operational));
    QCOMPARE(readingOf(QJsonArray{with(incident, u"End"_s, end)}), Reading(outage));
}

void GoogleIncidentFeedTest::aMalformedIncidentIsSkipped_data()
{
    QTest::addColumn<QJsonObject>("incident");
    const auto incident = with(currentIncident(gemini), u"severity"_s, u"high"_s);
    const auto products = u"affected_products"_s;
    const QJsonObject product{{u"title"_s, gemini}};
    QTest::newRow("empty") << QJsonObject{};
    QTest::newRow("no products") << without(incident, products);
    QTest::newRow("products null") << with(incident, products, QJsonValue::Null);
    QTest::newRow("products an object") << with(incident, products, product);
    QTest::newRow("products a text") << with(incident, products, gemini);
    QTest::newRow("products empty") << with(incident, products, QJsonArray{});
    QTest::newRow("products texts") << with(incident, products, QJsonArray{gemini});
    QTest::newRow("products an object, then a text") << with(incident, products, QJsonArray{product, gemini});
    QTest::newRow("products a number, then an object") << with(incident, products, QJsonArray{1, product});
    // As a value: a list of nothing but a list is, to clang, a copy of that list.
    QTest::newRow("products lists") << with(incident, products, QJsonArray{QJsonValue(QJsonArray{product})});
    QTest::newRow("product without title") << with(incident, products, QJsonArray{QJsonObject{{u"id"_s, gemini}}});
    QTest::newRow("title null") << with(incident, products, QJsonArray{QJsonObject{{u"title"_s, QJsonValue::Null}}});
    QTest::newRow("title a list") << with(incident, products,
                                          QJsonArray{QJsonObject{{u"title"_s, QJsonArray{gemini}}}});
}

void GoogleIncidentFeedTest::aMalformedIncidentIsSkipped()
{
    QFETCH(QJsonObject, incident);
    QCOMPARE(readingOf(QJsonArray{incident}), Reading(operational));
    // A later incident still decides.
    QCOMPARE(readingOf(QJsonArray{incident, currentIncident(gemini)}), Reading(disruption));
}

void GoogleIncidentFeedTest::theFirstCurrentIncidentDecides()
{
    const auto mild = currentIncident(gemini);
    const auto severe = with(mild, u"severity"_s, u"high"_s);
    QCOMPARE(readingOf(QJsonArray{mild, severe}), Reading(disruption));
    QCOMPARE(readingOf(QJsonArray{severe, mild}), Reading(outage));
    QCOMPARE(readingOf(QJsonArray{endedIncident(gemini), mild, severe}), Reading(disruption));
}

void GoogleIncidentFeedTest::titlesAreComparedExactly_data()
{
    QTest::addColumn<QString>("title");
    for (const auto &title : {u"gemini"_s, u"GEMINI"_s, u"Gemini "_s, u" Gemini"_s, u"Gemini for Workspace"_s,
                              u"NotebookLM"_s, u"Gemın"_s, u""_s}) {
        QTest::newRow(qPrintable(u'"' + title + u'"')) << title;
    }
}

void GoogleIncidentFeedTest::titlesAreComparedExactly()
{
    QFETCH(QString, title);
    QCOMPARE(readingOf(QJsonArray{currentIncident(title)}), Reading(operational));
}

void GoogleIncidentFeedTest::aProductIsFoundAnywhereInTheList()
{
    const QJsonObject other{{u"title"_s, u"Gmail"_s}}, untitled{{u"id"_s, 1}}, wanted{{u"title"_s, gemini}};
    for (const auto &products : {QJsonArray{wanted, other, untitled}, QJsonArray{other, wanted, untitled},
                                 QJsonArray{untitled, other, wanted}}) {
        const auto incident = with(currentIncident(u"Gmail"_s), u"affected_products"_s, products);
        QCOMPARE(readingOf(QJsonArray{incident}), Reading(disruption));
    }
}

void GoogleIncidentFeedTest::anotherProductCanBeRead()
{
    const QByteArray feed = json(QJsonArray{currentIncident(u"Google Vids"_s)});
    QCOMPARE(readingOf(feed, u"Google Vids"_s), Reading(disruption));
    QCOMPARE(readingOf(feed, gemini), Reading(operational));
}

void GoogleIncidentFeedTest::manyEndedIncidentsReadOperational()
{
    QJsonArray feed;
    for (int i = 0; i < 3000; ++i) {
        feed.append(endedIncident(i % 2 ? gemini : u"Google Meet"_s));
    }
    QVERIFY(json(feed).size() > 1'000'000);
    QCOMPARE(readingOf(feed), Reading(operational));
    feed.append(with(currentIncident(gemini), u"severity"_s, u"high"_s));
    QCOMPARE(readingOf(feed), Reading(outage));
}

void GoogleIncidentFeedTest::aBodyThatIsNotAFeedIsUnreadable_data()
{
    QTest::addColumn<QByteArray>("body");
    const QByteArray incident = json(currentIncident(gemini));
    QTest::newRow("nothing at all") << QByteArray();
    QTest::newRow("blanks") << QByteArray(" \n");
    QTest::newRow("byte-order mark alone") << QByteArray("\xEF\xBB\xBF");
    QTest::newRow("error page") << QByteArray("<!DOCTYPE html><html><title>Error 503</title></html>");
    QTest::newRow("captive portal") << QByteArray("<html><body>[]</body></html>");
    QTest::newRow("object") << incident;
    QTest::newRow("empty object") << QByteArray("{}");
    QTest::newRow("object that holds a feed") << "{\"incidents\":[" + incident + "]}";
    QTest::newRow("null") << QByteArray("null");
    QTest::newRow("text") << QByteArray("\"[]\"");
    QTest::newRow("list of null") << QByteArray("[null]");
    QTest::newRow("list of texts") << QByteArray("[\"Gemini\"]");
    QTest::newRow("list of lists") << QByteArray("[[]]");
    QTest::newRow("incident, then null") << "[" + incident + ",null]";
    QTest::newRow("number, then incident") << "[1," + incident + "]";
    QTest::newRow("comma at the end") << "[" + incident + ",]";
    QTest::newRow("two feeds") << QByteArray("[][]");
    QTest::newRow("guard before the list") << ")]}'\n[" + incident + "]";
    QTest::newRow("not UTF-8") << QByteArray("[{\"x\":\"\xE9\"}]");
    QTest::newRow("deeply nested") << QByteArray(200'000, '[') + QByteArray(200'000, ']');
}

void GoogleIncidentFeedTest::aBodyThatIsNotAFeedIsUnreadable()
{
    QFETCH(QByteArray, body);
    QCOMPARE(readingOf(body), Reading());
    QCOMPARE(GoogleIncidentFeed::reading(body, gemini), Reading());
}

void GoogleIncidentFeedTest::aBodyThatIsAFeedIsRead_data()
{
    QTest::addColumn<QByteArray>("body");
    QTest::addColumn<StatusReading>("expected");
    QTest::newRow("byte-order mark") << QByteArray("\xEF\xBB\xBF[]") << operational;
    QTest::newRow("blanks around") << QByteArray("\r\n [ ] \t") << operational;
    QTest::newRow("text escaped") << QByteArray(
        R"([{"affected_products":[{"title":"\u0047emini"}],"severity":"\u0068igh"}])")
                                  << outage;
    QTest::newRow("key escaped") << QByteArray(R"([{"affected_products":[{"title":"Gemini"}],"\u0065nd":null}])")
                                 << operational;
}

void GoogleIncidentFeedTest::aBodyThatIsAFeedIsRead()
{
    QFETCH(QByteArray, body);
    QFETCH(StatusReading, expected);
    QCOMPARE(readingOf(body), Reading(expected));
}

void GoogleIncidentFeedTest::everyTruncatedFeedIsUnreadable()
{
    const QByteArray whole = json(QJsonArray{endedIncident(gemini), currentIncident(gemini)});
    for (qsizetype length = 0; length < whole.size(); ++length) {
        QCOMPARE(readingOf(whole.left(length)), Reading());
    }
    QCOMPARE(readingOf(whole), Reading(disruption));
}

void GoogleIncidentFeedTest::mutatedDocumentsReadAsTheReferenceSays()
{
    JsonMutator mutator(1604,
                        {gemini, u"gemini"_s, u"Gmail"_s, u"high"_s, u"medium"_s, u"end"_s, u"title"_s,
                         u"currently_affected_locations"_s, u"affected_products"_s, u"severity"_s});
    const QJsonObject product{{u"title"_s, gemini}};
    const QJsonObject small{{u"affected_products"_s, QJsonArray{product}}, {u"severity"_s, u"low"_s}};
    const QJsonArray whole[] = {
        {endedIncident(gemini), currentIncident(u"Gmail"_s)},
        {currentIncident(u"Gmail"_s), currentIncident(gemini), endedIncident(gemini)},
        {small, with(small, u"severity"_s, u"high"_s)},
        {with(small, u"end"_s, QJsonValue::Null), with(small, u"currently_affected_locations"_s, QJsonArray{}), small},
    };
    QMap<QString, int> seen;
    for (int i = 0; i < 20'000; ++i) {
        const QJsonValue damaged = mutator.mutated(QJsonValue(whole[i % 4]));
        const QByteArray body = json(damaged);
        const Reading reading = readingOf(body);
        QVERIFY2(reading == expectedReading(damaged), body.constData());
        ++seen[reading ? rawValue(reading->health) : u"unreadable"_s];
    }
    QCOMPARE(seen.size(), 4);
    for (const int count : seen) {
        QVERIFY(count > 1000);
    }
}

void GoogleIncidentFeedTest::mutatedBytesAreNeverMisread()
{
    JsonMutator mutator(1605, {u"x"_s});
    const QByteArray whole[] = {
        json(QJsonArray{currentIncident(gemini)}),
        R"([{"affected_products":[{"title":"Gemini"}]},{"end":null}])",
        "\xEF\xBB\xBF[{\"affected_products\":[{\"title\":\"Gemini\"}],\"severity\":\"high\"}]",
    };
    int compared = 0, refused = 0;
    for (int i = 0; i < 30'000; ++i) {
        const QByteArray body = mutator.mutated(whole[i % 3]);
        const Reading reading = readingOf(body);
        if (!reading) {
            ++refused;
            continue;
        }
        const QByteArray text = body.startsWith("\xEF\xBB\xBF") ? body.mid(3) : body;
        const auto document = QJsonDocument::fromJson(text);
        QVERIFY2(!document.isNull(), body.constData());
        if (!mayRepeatAKey(text)) {
            ++compared;
            QVERIFY2(reading == expectedReading(document.array()), body.constData());
        }
    }
    QVERIFY(compared > 3000);
    QVERIFY(refused > 3000);
}

QTEST_GUILESS_MAIN(GoogleIncidentFeedTest)
#include "tst_googleincidentfeed.moc"
