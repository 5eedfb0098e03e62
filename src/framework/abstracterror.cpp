#include "abstracterror.h"

#include <utility>

AbstractError::AbstractError(int code, std::string category, std::string source,
                             std::string description)
    : m_code(code), m_category(std::move(category)), m_source(std::move(source)),
      m_description(std::move(description))
{
}

AbstractError genericError(GenericErrorCode::Code code, const std::string &source,
                           const std::string &description)
{
    return AbstractError(code, "GenericError", source, description);
}

QTextStream &operator<<(QTextStream &stream, const AbstractError &error)
{
    const auto text = [](const std::string &field) { return QString::fromUtf8(field.c_str()); };
    return stream << QStringLiteral(
                         "{ERROR: |CODE|: %1, |CATEGORY|: %2, |SOURCE|: %3, |DESCRIPTION|: %4}")
                         .arg(QString::number(error.code()), text(error.category()),
                              text(error.source()), text(error.description()));
}
