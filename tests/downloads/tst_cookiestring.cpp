#include "cookiestring.h"

#include <QTest>

using Cookies = QList<QNetworkCookie>;

static Cookies cookiesOf(std::initializer_list<std::pair<const char *, const char *>> pairs)
{
    Cookies cookies;
    for (const auto &[name, value] : pairs)
        cookies.append(QNetworkCookie(name, value));
    return cookies;
}

class TestCookieString : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void parsing_data();
    void parsing();
    void writing_data();
    void writing();
    void manyCookies();
};

void TestCookieString::parsing_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QChar>("separator");
    QTest::addColumn<Cookies>("cookies");
    const auto row = [](const char *name, const QString &text, QChar separator,
                        std::initializer_list<std::pair<const char *, const char *>> cookies) {
        QTest::newRow(name) << text << separator << cookiesOf(cookies);
    };
    row("empty", {}, u';', {});
    row("separators alone", u";;; ;"_qs, u';', {});
    row("two", u"a=1; b=2"_qs, u';', {{"a", "1"}, {"b", "2"}});
    row("without equals", u"a=1;b; c=3;d"_qs, u';', {{"a", "1"}, {"c", "3"}});
    row("equals in the value", u"a==b=c="_qs, u';', {{"a", "=b=c="}});
    row("no name, no value", u"=v; n=; ="_qs, u';', {{"", "v"}, {"n", ""}, {"", ""}});
    row("blanks outside are dropped, inside kept", u"\t a = 1 \n; b=2"_qs, u';',
        {{"a ", " 1"}, {"b", "2"}});
    row("quotes and commas mean nothing", u"a=\"1;b=2\",x"_qs, u';',
        {{"a", "\"1"}, {"b", "2\",x"}});
    row("beyond ASCII", u"ě=ř😀"_qs, u';', {{"\xc4\x9b", "\xc5\x99\xf0\x9f\x98\x80"}});
    row("another separator", u"a=1;x|A=2"_qs, u'|', {{"a", "1;x"}, {"A", "2"}});
    row("a letter as separator, of that case only", u"n=1xm=2Xy"_qs, u'x',
        {{"n", "1"}, {"m", "2Xy"}});
}

void TestCookieString::parsing()
{
    QFETCH(const QString, text);
    QFETCH(const QChar, separator);
    QTEST(cookiesFromString(text, separator), "cookies");
}

void TestCookieString::writing_data()
{
    QTest::addColumn<Cookies>("cookies");
    QTest::addColumn<QString>("text");
    QNetworkCookie withMore("c", "3");
    withMore.setPath(QStringLiteral("/p"));
    withMore.setSecure(true);
    QTest::newRow("none") << Cookies() << QString();
    QTest::newRow("one") << cookiesOf({{"a", "1"}}) << u"a=1"_qs;
    QTest::newRow("byte order mark")
        << cookiesOf({{"\uFEFFa", "\uFEFF1"}}) << u"\uFEFFa=\uFEFF1"_qs;
    QTest::newRow("equal ones, empty ones, and name and value alone")
        << cookiesOf({{"a", "1"}, {"a", "1"}, {"", ""}, {"\xc4\x9b", ""}}) + Cookies{withMore}
        << u"a=1;a=1;=;ě=;c=3"_qs;
}

void TestCookieString::writing()
{
    QFETCH(const Cookies, cookies);
    QTEST(cookiesToString(cookies, u';'), "text");
}

void TestCookieString::manyCookies()
{
    constexpr int count = 100'000;
    QString text;
    for (int i = 0; i < count; ++i)
        text += u"name%1=value%1; "_qs.arg(i);
    const Cookies cookies = cookiesFromString(text, u';');
    QCOMPARE(cookies.size(), count);
    QCOMPARE(cookies.last(), QNetworkCookie("name99999", "value99999"));
    QCOMPARE(cookiesFromString(cookiesToString(cookies, u';'), u';'), cookies);
}

QTEST_GUILESS_MAIN(TestCookieString)
#include "tst_cookiestring.moc"
