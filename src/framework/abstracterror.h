#pragma once

#include "genericerrorcode.h"

#include <QMetaType>
#include <QString>
#include <QTextStream>
#include <QVariant>
#include <string>

/// An error as a value. Code 0, the default, means that there is no error. Texts are UTF-8.
class AbstractError {
public:
    AbstractError() = default;
    AbstractError(int code, std::string category, std::string source, std::string description);

    int code() const { return m_code; }
    /// Which list of codes the code is from, such as "GenericError".
    const std::string &category() const { return m_category; }
    /// The component that reports it.
    const std::string &source() const { return m_source; }
    const std::string &description() const { return m_description; }

    bool isError() const { return m_code != 0; }
    bool operator==(const AbstractError &) const = default;

private:
    int m_code = 0;
    std::string m_category;
    std::string m_source;
    std::string m_description;
};

Q_DECLARE_METATYPE(AbstractError)

/// An error of the category "GenericError".
AbstractError genericError(GenericErrorCode::Code code, const std::string &source,
                           const std::string &description);

/// "{ERROR: |CODE|: 5, |CATEGORY|: …, |SOURCE|: …, |DESCRIPTION|: …}", without a line break. Each
/// text is written up to its first zero byte.
QTextStream &operator<<(QTextStream &stream, const AbstractError &error);

namespace AbstractErrorKey {
inline QString code() { return QStringLiteral("code"); }
inline QString category() { return QStringLiteral("category"); }
inline QString source() { return QStringLiteral("source"); }
inline QString description() { return QStringLiteral("description"); }
} // namespace AbstractErrorKey

/// The form in which errors cross the link: an int and three texts under the keys above.
template <typename Container> Container toContainer(const AbstractError &error)
{
    Container container;
    container[AbstractErrorKey::code()] = error.code();
    container[AbstractErrorKey::category()] = QString::fromStdString(error.category());
    container[AbstractErrorKey::source()] = QString::fromStdString(error.source());
    container[AbstractErrorKey::description()] = QString::fromStdString(error.description());
    return container;
}

template <typename Container> AbstractError abstractErrorFromContainer(const Container &container)
{
    const auto text = [&container](const QString &key) {
        return container.value(key).toString().toStdString();
    };
    return AbstractError(container.value(AbstractErrorKey::code()).toInt(),
                         text(AbstractErrorKey::category()), text(AbstractErrorKey::source()),
                         text(AbstractErrorKey::description()));
}
