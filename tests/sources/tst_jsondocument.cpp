#include "JsonMutator.h"
#include "sources/GoogleIncidentFeed.h"
#include "sources/JsonDocument.h"
#include "sources/StatuspageSummary.h"

#include <QTest>

using namespace kelvo;
using namespace Qt::StringLiterals;

namespace {

/// What JSON says of a text, and what this program does.
enum class Verdict {
    valid,   ///< a parser must accept it
    invalid, ///< a parser must refuse it
    taken,   ///< a parser may do either; this program accepts it
    refused, ///< a parser may do either; this program refuses it
};

bool isAccepted(Verdict verdict)
{
    return verdict == Verdict::valid || verdict == Verdict::taken;
}

bool parses(const QByteArray &text)
{
    return withExactMemory(text, [](const QByteArray &bytes) { return JsonDocument::parse(bytes).has_value(); });
}

bool isSummary(const QByteArray &text)
{
    return withExactMemory(text, &StatuspageSummary::decode).has_value();
}

bool isFeed(const QByteArray &text)
{
    return withExactMemory(
        text, [](const QByteArray &bytes) { return GoogleIncidentFeed::reading(bytes, u"Gemini"_s).has_value(); });
}

/// A summary with this text after its own members.
QByteArray summaryWith(const QByteArray &text)
{
    return R"({"status":{"indicator":"none","description":"d"})" + text + "}";
}

QByteArray nested(qsizetype levels, const QByteArray &open, const QByteArray &close, const QByteArray &inside = {})
{
    return open.repeated(levels) + inside + close.repeated(levels);
}

} // namespace

/// The categories of texts that are known to tell parsers apart. Each is tried on the parser and on both decoders.
class JsonDocumentTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aValueIsAcceptedOrRefused_data();
    void aValueIsAcceptedOrRefused();
    void membersAreAcceptedOrRefused_data();
    void membersAreAcceptedOrRefused();
    void aTextIsAcceptedOrRefused_data();
    void aTextIsAcceptedOrRefused();
    void aStringIsDecoded_data();
    void aStringIsDecoded();
    void theFirstOfTwoEqualKeysCounts();
    void nothingIsReadBehindTheText();
};

void JsonDocumentTest::aValueIsAcceptedOrRefused_data()
{
    QTest::addColumn<QByteArray>("value");
    QTest::addColumn<Verdict>("verdict");
    const auto add = [](const char *category, Verdict verdict, const QList<QByteArray> &values) {
        for (const auto &value : values) {
            QTest::addRow("%s: %s", category, value.toPercentEncoding(" \"\\{}[]:,+/'").left(60).constData())
                << value << verdict;
        }
    };

    add("literal", Verdict::valid, {"true", "false", "null"});
    add("literal", Verdict::invalid,
        {"tru", "fals", "nul", "True", "FALSE", "Null", "nulll", "truefalse", "undefined", "yes", "None", "t",
         "<null>"});

    add("number", Verdict::valid,
        {"0",
         "-0",
         "7",
         "-7",
         "10",
         "9007199254740993",
         "9223372036854775807",
         "-9223372036854775808",
         "18446744073709551615",
         "0.5",
         "-0.5",
         "1.25",
         "0.000001",
         "1e5",
         "1E5",
         "1e+5",
         "1E-5",
         "1.5e3",
         "-1.5E-3",
         "0e0",
         "0e+7",
         "0.0",
         "-0.0",
         "1e308",
         "2.2250738585072014e-308",
         "5e-324",
         "0.1000000000000000055511151231257827021181583404541015625"});
    add("number", Verdict::invalid,
        {"+1",           "-",        "--1",       "+-1",    "1-",    "- 1",    "01",   "-01",   "00",
         "0123",         ".5",       "-.5",       "5.",     "-5.",   "5.e2",   ".e2",  "1.2.3", "1..2",
         "1e",           "1E",       "1e+",       "1E-",    "1.5e",  "0e",     "0E+",  "1ee2",  "1e2.5",
         "1e 5",         "1 000",    "1_000",     "1,5x",   "0x1F",  "0x",     "0b1",  "0o7",   "NaN",
         "-NaN",         "Infinity", "-Infinity", "inf",    "1a",    "1.5abc", "12px", "1+1",   "1/2",
         "\xEF\xBC\x91", "\xC2\xB2", "1\xE9",     "1e\xE9", "-\xE9", "0\xE9"});
    add("number", Verdict::refused,
        {"1e309", "-1e309", "1e99999", "-7.5e99999", "18446744073709551616", "-9223372036854775809",
         "123456789012345678901234567890", "-123456789012345678901234567890"});
    add("number", Verdict::taken, {"1e-400", "-1e-400", "1e-99999", "4.9e-325"});

    add("string", Verdict::valid,
        {R"("")",
         R"("text")",
         R"("a/b")",
         R"("/* no comment */")",
         R"("\"")",
         R"("\\")",
         R"("\/")",
         R"("\b\f\n\r\t")",
         R"("\u0000")",
         R"("\u001F")",
         R"("\u0022")",
         R"("\u005C")",
         R"("\u00e9\u00E9")",
         R"("\uFFFF")",
         R"("\uFDD0")",
         R"("\u2028\u2029")",
         R"("\u200B\u2060")",
         R"("\\u0041")",
         R"("\\\"")",
         "\"\x7F\"",
         "\"\xC3\xA9\"",
         "\"\xE2\x80\xA8\"",
         "\"\xEF\xBF\xBF\"",
         "\"\xEF\xBF\xBE\"",
         "\"\xEF\xB7\x90\"",
         "\"\xF0\x9B\xBF\xBF\"",
         "\"\xF4\x8F\xBF\xBF\"",
         "\"\xEF\xBB\xBF\"",
         "\"\xE2\x81\xA0\"",
         R"("\uD834\uDD1E")",
         R"("\ud801\udc37")",
         R"("\uD83D\uDE00\uD83D\uDE01")",
         R"("\uDBFF\uDFFE")",
         R"("\uDBFF\uDFFF")"});
    add("string", Verdict::invalid,
        {"\"",
         "\"text",
         "text",
         "'text'",
         "text\"",
         R"("\")",
         R"("\\\")",
         R"("\x41")",
         R"("\a")",
         R"("\0")",
         R"("\')",
         R"("\U0041")",
         R"("\u")",
         R"("\u0")",
         R"("\u00")",
         R"("\u004")",
         R"("\u00G0")",
         R"("\u 041")",
         R"("\u-041")",
         R"("\uD834\")",
         R"("\uD834\u")",
         R"("\uD834\uDD")",
         R"("\uD834\u1x")",
         R"("\uD800\uD800\x")",
         R"(\u0020"a")",
         "\"a\tb\"",
         "\"a\nb\"",
         "\"a\rb\"",
         "\"a\x1F"
         "b\"",
         "\"a\x08"
         "b\"",
         QByteArray("\"a\0b\"", 5),
         QByteArray("\"\\\0\"", 4),
         "\"\\\t\"",
         "\"\\\xE9\"",
         "\"\\u\xE9\"",
         "\"\\\xF0\x9F\x98\x80\"",
         "\xC3\xA9",
         "\"a\" \"b\"",
         "\"a\"b",
         "\xE2\x80\x9C"
         "a\xE2\x80\x9D"});
    add("surrogates", Verdict::refused,
        {R"("\uD834")", R"("\uDD1E")", R"("\uDD1E\uD834")", R"("\uD834x")", R"("\uD834\n")", R"("\uD834\u0041")",
         R"("\uD834\uD834")", R"("\uD834\uD834\n")", R"("\uDBFF")", R"("\uDC00")", R"("\uDFFF")", R"("x\uDC37y")"});
    add("UTF-8", Verdict::refused,
        {"\"\xE9\"",
         "\"\xFF\"",
         "\"\xFE\"",
         "\"\x80\"",
         "\"\xBF\"",
         "\"\xC3\"",
         "\"\xE2\x82\"",
         "\"\xF0\x9F\x98\"",
         "\"\xC0\xAF\"",
         "\"\xC1\xBF\"",
         "\"\xE0\x80\xAF\"",
         "\"\xF0\x80\x80\xAF\"",
         "\"\xF8\x88\x80\x80\x80\"",
         "\"\xFC\x84\x80\x80\x80\x80\"",
         "\"\xED\xA0\x80\"",
         "\"\xED\xBF\xBF\"",
         "\"\xED\xA0\xB4\xED\xB4\x9E\"",
         "\"\xF4\x90\x80\x80\"",
         "\"\xF7\xBF\xBF\xBF\"",
         "\"\xC3\x28\"",
         "\"\xE2\x28\xA1\"",
         "\"\xC3\xA9\xA9\"",
         QByteArray("\"\xC0\x80\"", 4)});

    add("array", Verdict::valid,
        {"[]", "[ ]", "[[]]", "[[[]],[]]", "[1]", "[1,2]", "[ 1 , 2 ]", "[\n1,\r\n2\t]", "[null,1,\"1\",{},[]]",
         "[\"\"]", "[false]"});
    add("array", Verdict::invalid, {"[",          "[1",         "[1,",       "[,",
                                    "[,]",        "[,1]",       "[1,]",      "[1,,]",
                                    "[1,,2]",     "[1 2]",      "[1 true]",  "[\"a\" \"b\"]",
                                    "[1;2]",      "[1:2]",      "[\"a\":1]", "[a]",
                                    "[*]",        "[-]",        "[\"",       "[\"a",
                                    "[\"a]",      "[1}",        "[[]",       "[[1,2]",
                                    "[1],",       "[{}",        "[{",        "[x",
                                    "[3[4]]",     "[\xE9]",     "[\xFF]",    "[\"a\",\n4\n,1,",
                                    "[1,\n1\n,1", "[{\"a\":1]", "(1)"});

    add("object", Verdict::valid,
        {"{}", "{ }", R"({"a":1})", R"({"a":1,"b":2})", R"({ "a" : 1 , "b" : 2 })", "{\n\"a\"\t:\r\n1}", R"({"":0})",
         R"({"a":{"a":{}}})", R"({"\u0000":1})", R"({"a\"b":1})", R"({"\u0061":1})", R"({"a":1e-5,"b":-1E+5})",
         R"({"a":1,"a":2})", R"({"a":1,"a":1})"});
    add("object", Verdict::invalid,
        {"{",
         "{,",
         "{,}",
         "{[",
         "{]",
         R"({"a)",
         R"({"a")",
         R"({"a"})",
         R"({"a":)",
         R"({"a":})",
         R"({"a":,})",
         R"({"a":1)",
         R"({"a":1,)",
         R"({"a":1,})",
         R"({"a":1,,"b":2})",
         R"({"a":1,,,})",
         R"({:1})",
         R"({"a"::1})",
         R"({"a" 1})",
         R"({"a" "b"})",
         R"({"a",1})",
         R"({"a"=1})",
         R"({"a":1 2})",
         R"({"a":1 "b":2})",
         R"({"a":1;"b":2})",
         R"({"a":1,"b"})",
         "{a:1}",
         "{'a':1}",
         R"({"a":'1'})",
         "{1:1}",
         "{1e9999:1}",
         "{null:1}",
         "{true:1}",
         "{[]:1}",
         R"({[:"a"})",
         R"({"a":1]})",
         "{\"a\":\"b",
         "{\"\xE9\":1}",
         "{\"\xB9\":1,}",
         "{\xF0\x9F\x98\x80}",
         R"({"a":/**/1})",
         R"({"a":1//
})"});
    add("object", Verdict::refused, {R"({"\uDD1E":1})", R"({"\uD834":1})"});

    add("whitespace", Verdict::valid, {" 1", "1 ", "\t1", "\n1\n", "\r1\r", " \t\r\n1 \t\r\n"});
    add("whitespace", Verdict::invalid,
        {"\f1", "\v1", "[\f]",
         "\xC2\xA0"
         "1",
         "\xE2\x80\xA8"
         "1",
         "\xE2\x81\xA0"
         "1",
         "\xEF\xBB\xBF"
         "1",
         QByteArray("\0"
                    "1",
                    2),
         QByteArray("1\0", 2),
         "\x1A"
         "1"});

    add("nesting", Verdict::taken, {nested(500, "[", "]"), nested(500, "{\"a\":", "}", "1")});
    add("nesting", Verdict::refused,
        {nested(2'000, "[", "]"), nested(100'000, "[", "]"), nested(100'000, "{\"a\":", "}", "1")});
    add("nesting", Verdict::invalid,
        {QByteArray(100'000, '['), QByteArray("[{\"\":").repeated(50'000), nested(500, "[", "]") + "]",
         QByteArray(501, '[') + QByteArray(500, ']')});
}

void JsonDocumentTest::aValueIsAcceptedOrRefused()
{
    QFETCH(const QByteArray, value);
    QFETCH(const Verdict, verdict);
    QCOMPARE(parses("[" + value + "]"), isAccepted(verdict));
    QCOMPARE(isSummary(summaryWith(",\"x\":" + value)), isAccepted(verdict));
    QCOMPARE(isFeed("[{\"x\":" + value + "}]"), isAccepted(verdict));
}

void JsonDocumentTest::membersAreAcceptedOrRefused_data()
{
    QTest::addColumn<QByteArray>("members");
    QTest::addColumn<bool>("accepted");
    for (const char *members : {"", R"(,"a":1)", " ,\n\"a\" : 1 ", R"(,"":0)", R"(,"status":7)", R"(,"a":1,"a":2)"}) {
        QTest::addRow("valid: %s", members) << QByteArray(members) << true;
    }
    for (const char *members :
         {",", ",,", R"(,"a")", R"("a":1)", R"(,"a":)", R"(,"a":1,)", R"(,,"a":1)", R"(;"a":1)", R"(,a:1)", R"(,'a':1)",
          "]", "[",  "}",       "{",        "x",        "#",          "/**/",       "//\n",      "1",       "\"a\""}) {
        QTest::addRow("invalid: %s", members) << QByteArray(members) << false;
    }
}

/// Members at the level of the document itself.
void JsonDocumentTest::membersAreAcceptedOrRefused()
{
    QFETCH(const QByteArray, members);
    QFETCH(const bool, accepted);
    QCOMPARE(isSummary(summaryWith(members)), accepted);
    QCOMPARE(isFeed(R"([{"id":"a")" + members + "}]"), accepted);
}

void JsonDocumentTest::aTextIsAcceptedOrRefused_data()
{
    QTest::addColumn<QByteArray>("prefix");
    QTest::addColumn<QByteArray>("suffix");
    QTest::addColumn<Verdict>("verdict");
    const auto before = [](Verdict verdict, const QList<QByteArray> &prefixes) {
        for (const auto &prefix : prefixes) {
            QTest::addRow("before: %s", prefix.toPercentEncoding(" \"{}[]").constData())
                << prefix << QByteArray() << verdict;
        }
    };
    const auto after = [](Verdict verdict, const QList<QByteArray> &suffixes) {
        for (const auto &suffix : suffixes) {
            QTest::addRow("after: %s", suffix.toPercentEncoding(" \"{}[]").constData())
                << QByteArray() << suffix << verdict;
        }
    };
    before(Verdict::valid, {"", " ", "\n", "\r\n\t "});
    after(Verdict::valid, {" ", "\n", "\r\n\t "});
    before(Verdict::taken, {"\xEF\xBB\xBF", "\xEF\xBB\xBF \n"});
    before(Verdict::invalid,
           {"x",
            "]",
            "}",
            ",",
            ":",
            "\"",
            "*",
            "#",
            "/**/",
            "//\n",
            "<!-- -->",
            "1",
            "{}",
            "[]",
            "\xE9",
            "\xC3\xA5",
            "\xEF\xBB",
            "\xBB\xBF",
            "\xEF\xBB\xBF\xEF\xBB\xBF",
            " \xEF\xBB\xBF",
            "\xFE\xFF",
            "\xFF\xFE",
            "\xE2\x81\xA0",
            "\f",
            "\v",
            "\xC2\xA0",
            QByteArray(1, '\0'),
            ")]}'\n",
            "\x1E"});
    after(Verdict::invalid,
          {"x",
           "]",
           "}",
           ",",
           ":",
           "\"",
           "*",
           "#",
           "#{}",
           "/",
           "//",
           "/**/",
           "/**//",
           "//\n",
           "1",
           "{}",
           "[]",
           "\"x\"",
           "\xE9",
           "\xC3\xA5",
           "\xEF\xBB\xBF",
           "\xE2\x81\xA0",
           "\f",
           "\v",
           "\xC2\xA0",
           QByteArray(1, '\0'),
           "\x1A",
           "\n{}",
           "@"});
}

/// A whole document with something around it.
void JsonDocumentTest::aTextIsAcceptedOrRefused()
{
    QFETCH(const QByteArray, prefix);
    QFETCH(const QByteArray, suffix);
    QFETCH(const Verdict, verdict);
    for (const char *value : {"7", "null", "true", "\"\"", "[]", "{}", "-0.5"}) {
        // A digit before or after a number makes another number, and a quotation mark another string.
        const auto text = prefix + value + suffix;
        const bool isOther = (text == "17" || text == "71" || text == "-0.51");
        QVERIFY2(isOther || parses(text) == isAccepted(verdict), text.constData());
    }
    QCOMPARE(isSummary(prefix + summaryWith({}) + suffix), isAccepted(verdict));
    QCOMPARE(isFeed(prefix + "[]" + suffix), isAccepted(verdict));
}

void JsonDocumentTest::aStringIsDecoded_data()
{
    QTest::addColumn<QByteArray>("string");
    QTest::addColumn<QString>("text");
    const auto add = [](const QByteArray &string, const QString &text) {
        QTest::newRow(string.toPercentEncoding(" \\/").constData()) << string << text;
    };
    add("", u""_s);
    add("plain", u"plain"_s);
    add(R"(\"\\\/\b\f\n\r\t)", u"\"\\/\b\f\n\r\t"_s);
    add(R"(\u0041\u00e9\u20AC)", u"Aé€"_s);
    add(R"(a\u0000b)", u"a"_s + QChar(u'\0') + u'b');
    add(R"(\\u0041)", u"\\u0041"_s);
    add(R"(\ud834\uDD1E)", QString::fromUcs4(U"\U0001D11E"));
    add(R"(\uDBFF\uDFFF)", QString::fromUcs4(U"\U0010FFFF"));
    add(R"(\uFFFE\uFFFF\uFDD0)", QString(QChar(0xFFFE)) + QChar(0xFFFF) + QChar(0xFDD0));
    add(R"(\u2028\u2029\u200b)", QString(QChar(0x2028)) + QChar(0x2029) + QChar(0x200B));
    add("\xC3\xA9\xE2\x82\xAC\xF0\x9D\x84\x9E", u"é€"_s + QString::fromUcs4(U"\U0001D11E"));
    add("\x7F", QString(QChar(0x7F)));
    add("/* a */ // b", u"/* a */ // b"_s);
}

void JsonDocumentTest::aStringIsDecoded()
{
    QFETCH(const QByteArray, string);
    QFETCH(const QString, text);
    const auto summary = StatuspageSummary::decode(R"({"status":{"indicator":"i","description":")" + string
                                                   + R"("},"components":[{"name":")" + string + R"(","status":"s"}]})");
    QVERIFY(summary);
    QCOMPARE(summary->status.description, text);
    QCOMPARE(summary->components.at(0).name, text);
    // The feed compares a title with the text.
    const auto feed = R"([{"affected_products":[{"title":")" + string + R"("}]}])";
    QCOMPARE(GoogleIncidentFeed::reading(feed, text)->health, ServiceHealth::degraded);
    QCOMPARE(GoogleIncidentFeed::reading(feed, text + u'x')->health, ServiceHealth::operational);
}

void JsonDocumentTest::theFirstOfTwoEqualKeysCounts()
{
    const auto summary = StatuspageSummary::decode(
        R"({"status":{"indicator":"none","indicator":"major","description":"d"},"status":7})");
    QVERIFY(summary);
    QCOMPARE(summary->status.indicator, u"none"_s);
    const auto feed = R"([{"affected_products":[{"title":"a","title":"b"}],"severity":"high","severity":"low"}])";
    QCOMPARE(GoogleIncidentFeed::reading(feed, u"a"_s)->health, ServiceHealth::outage);
    QCOMPARE(GoogleIncidentFeed::reading(feed, u"b"_s)->health, ServiceHealth::operational);
}

// A text with enough memory behind it is not copied.
void JsonDocumentTest::nothingIsReadBehindTheText()
{
    const auto withMemoryBehind = [](QByteArray text, char behind) {
        const auto size = text.size();
        text.append(200, behind);
        text.truncate(size);
        return text;
    };
    QVERIFY(JsonDocument::parse(withMemoryBehind("[12]"_ba, ']')));
    QVERIFY(JsonDocument::parse(withMemoryBehind("12"_ba, '3')));
    QCOMPARE(JsonDocument::parse(withMemoryBehind("12"_ba, '3'))->root().get_int64().value_unsafe(), 12);
    QVERIFY(!JsonDocument::parse(withMemoryBehind("[12"_ba, ']')));
    QVERIFY(!JsonDocument::parse(withMemoryBehind("\"12"_ba, '"')));
}

QTEST_GUILESS_MAIN(JsonDocumentTest)
#include "tst_jsondocument.moc"
