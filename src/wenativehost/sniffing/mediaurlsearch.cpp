#include "mediaurlsearch.h"

#include "mediakind.h"

#include <QSet>

#include <string_view>

namespace {

constexpr int maxDepth = 3;

bool namesMedia(const QUrl &url)
{
    return mediaKindOfFileName(url.fileName(QUrl::FullyDecoded)) != MediaKind::NoMediaKind;
}

class Search {
public:
    explicit Search(const QUrl &pageUrl) : m_pageUrl(pageUrl) { }

    void searchText(QByteArrayView text, int depth)
    {
        forEachPart(text, "&|\"'<>{} \t\r\n",
                    [this, depth](QByteArrayView part) { searchPart(part, depth); });
    }

    std::vector<QUrl> takeFound() { return std::move(m_found); }

private:
    /// The pieces between separators; they may be empty.
    template <typename Function>
    static void forEachPart(QByteArrayView text, std::string_view separators, Function function)
    {
        qsizetype begin = 0;
        for (qsizetype at = 0; at <= text.size(); ++at) {
            if (at < text.size() && separators.find(text[at]) == std::string_view::npos)
                continue;
            function(text.sliced(begin, at - begin));
            begin = at + 1;
        }
    }

    /// Commas and similar characters separate addresses, but also occur within them.
    void searchPart(QByteArrayView part, int depth)
    {
        const QByteArrayView whole = withoutName(part);
        if (isAbsolute(whole) && !listsAddresses(whole) && namesMedia(toUrl(whole))) {
            searchWord(whole, depth);
            return;
        }
        forEachPart(part, ";,[]()",
                    [this, depth](QByteArrayView word) { searchWord(word, depth); });
    }

    void searchWord(QByteArrayView word, int depth)
    {
        const QByteArrayView address = withoutName(word);
        if (isAbsolute(address)) {
            addIfMedia(address);
            // A player's address often contains the addresses of its media.
            if (depth < maxDepth && address.contains('?'))
                searchWord(address.sliced(address.indexOf('?') + 1), depth + 1);
            return;
        }
        if (depth < maxDepth && address.contains('%')) {
            const QByteArray decoded = QByteArray::fromPercentEncoding(address.toByteArray());
            if (hasStructure(decoded) && decoded != address) {
                searchText(decoded, depth + 1);
                return;
            }
        }
        addIfMedia(address);
    }

    static bool isAbsolute(QByteArrayView address)
    {
        return address.startsWith("http://") || address.startsWith("https://");
    }

    static bool listsAddresses(QByteArrayView text)
    {
        return text.contains(",http") || text.contains(";http") || text.contains("[http")
            || text.contains("(http");
    }

    static QUrl toUrl(QByteArrayView address) { return QUrl(QString::fromUtf8(address)); }

    /// The value of "name=value"; any other text unchanged.
    static QByteArrayView withoutName(QByteArrayView word)
    {
        const auto equals = word.indexOf('=');
        if (equals < 0)
            return word;
        const QByteArrayView name = word.first(equals);
        return name.contains('/') || name.contains(':') || name.contains('?')
            ? word
            : word.sliced(equals + 1);
    }

    /// Whether a text contains more than one file name.
    static bool hasStructure(QByteArrayView text)
    {
        return text.contains('/') || text.contains(':') || text.contains('=') || text.contains('&')
            || text.contains('%');
    }

    void addIfMedia(QByteArrayView address)
    {
        // Longer ones are data, not addresses.
        constexpr qsizetype maxAddress = 8192;
        if (address.size() > maxAddress || !address.contains('.'))
            return;
        const QUrl url = m_pageUrl.resolved(toUrl(address));
        const bool fetchable = url.isValid()
            && (url.scheme() == QStringLiteral("http") || url.scheme() == QStringLiteral("https"))
            && !url.host().isEmpty();
        if (fetchable && namesMedia(url) && !m_known.contains(url)) {
            m_known.insert(url);
            m_found.push_back(url);
        }
    }

    const QUrl m_pageUrl;
    QSet<QUrl> m_known;
    std::vector<QUrl> m_found;
};

} // namespace

std::vector<QUrl> findMediaUrls(const std::string &text, const QUrl &pageUrl)
{
    Search search(pageUrl);
    search.searchText(QByteArrayView(text.data(), static_cast<qsizetype>(text.size())), 0);
    return search.takeFound();
}
