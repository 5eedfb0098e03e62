#include "wildcardmatch.h"

#include <QTest>

#include <cctype>
#include <cstring>
#include <random>
#include <string>

using namespace std::string_literals;

namespace {

/// The definition of a match, word for word; its cost explodes with the number of stars.
bool matchesByDefinition(const char *str, const char *mask)
{
    if (!*str)
        return !*mask;
    if (!*mask)
        return false;
    if (*mask == '*') {
        if (!mask[1])
            return true;
        for (; *str; ++str) {
            if (matchesByDefinition(str, mask + 1))
                return true;
        }
        return false;
    }
    if (*mask == '?' || *mask == *str)
        return matchesByDefinition(str + 1, mask + 1);
    return false;
}

std::string randomText(std::mt19937 &random, const std::string &alphabet, std::size_t maxLength)
{
    std::string text(random() % (maxLength + 1), '\0');
    for (char &c : text)
        c = alphabet[random() % alphabet.size()];
    return text;
}

} // namespace

class TestWildcardMatch : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void masks_data();
    void masks();
    void asDefined();
    void manyStars();
    void nullPointers();
};

void TestWildcardMatch::masks_data()
{
    QTest::addColumn<std::string>("text");
    QTest::addColumn<std::string>("mask");
    QTest::addColumn<bool>("exact");
    QTest::addColumn<bool>("withoutCase");

    QTest::newRow("both empty") << ""s
                                << ""s << true << true;
    QTest::newRow("star against nothing") << ""s
                                          << "*"s << false << false;
    QTest::newRow("empty mask") << "a"s
                                << ""s << false << false;
    QTest::newRow("last star needs a character") << "a"s
                                                 << "a*"s << false << false;
    QTest::newRow("last stars need one character") << "ab"s
                                                   << "a***"s << true << true;
    QTest::newRow("inner star needs none") << "ab"s
                                           << "a*b"s << true << true;
    QTest::newRow("first star needs none") << "a"s
                                           << "*a"s << true << true;
    QTest::newRow("question mark needs one") << "a"s
                                             << "a?"s << false << false;
    QTest::newRow("case") << "File.PLS"s
                          << "*.pls"s << false << true;
    QTest::newRow("case of the mask") << "pls"s
                                      << "PL?"s << false << true;
    QTest::newRow("whole text") << "abc"s
                                << "b"s << false << false;
    QTest::newRow("second try") << "aXbXc"s
                                << "a*Xc"s << true << true;
    QTest::newRow("bytes above ASCII") << "\xc3\xa9"s
                                       << "\xc3?"s << true << true;
}

void TestWildcardMatch::masks()
{
    QFETCH(std::string, text);
    QFETCH(std::string, mask);
    QTEST(strcmp_m(text.c_str(), mask.c_str()) != nullptr, "exact");
    QTEST(strcmpi_m(text.c_str(), mask.c_str()) != nullptr, "withoutCase");
}

void TestWildcardMatch::asDefined()
{
    std::mt19937 random(20240817);
    int matched = 0;
    for (int i = 0; i < 200'000; ++i) {
        const std::string text = randomText(random, "aAb*", 9);
        const std::string mask = randomText(random, "aAb*?*", 7);
        const bool expected = matchesByDefinition(text.c_str(), mask.c_str());
        const char *const result = strcmp_m(text.c_str(), mask.c_str());
        const std::string what = std::string(mask).append(" against ").append(text);
        QVERIFY2((result != nullptr) == expected, what.c_str());
        QVERIFY(!result || (result >= text.c_str() && result <= text.c_str() + text.size()));
        matched += expected;

        std::string lowText = text;
        std::string lowMask = mask;
        for (char &c : lowText)
            c = static_cast<char>(std::tolower(c));
        for (char &c : lowMask)
            c = static_cast<char>(std::tolower(c));
        QVERIFY2((strcmpi_m(text.c_str(), mask.c_str()) != nullptr)
                     == matchesByDefinition(lowText.c_str(), lowMask.c_str()),
                 what.c_str());
    }
    QVERIFY(matched > 20'000);
}

/// By the definition's own recursion this would not end.
void TestWildcardMatch::manyStars()
{
    const std::string text(10'000, 'a');
    QVERIFY(!strcmp_m(text.c_str(), "*a*a*a*a*a*a*a*a*b"));
    QVERIFY(!strcmpi_m(text.c_str(), "*A*A*A*A*A*A*A*A*B"));
    QVERIFY(strcmp_m((text + "b").c_str(), "*a*a*a*a*a*a*a*a*b"));
}

void TestWildcardMatch::nullPointers()
{
    QVERIFY(!strcmp_m(nullptr, ""));
    QVERIFY(!strcmp_m("", nullptr));
    QVERIFY(!strcmpi_m(nullptr, "*"));
    QVERIFY(!strcmpi_m("a", nullptr));
}

QTEST_GUILESS_MAIN(TestWildcardMatch)
#include "tst_wildcardmatch.moc"
