#include "platform/foundation/Exception.h"

namespace ZQTPlatform {

Exception::Exception(const QString &name, const QString &reason)
    : m_name(name), m_reason(reason), m_what((name + QStringLiteral(": ") + reason).toStdString())
{
}

} // namespace ZQTPlatform
