#include "ui/format/without_remark.h"

namespace kestro {

QString withoutRemark(const QString& name) {
    const qsizetype bracket = name.lastIndexOf(QStringLiteral(" ("));
    return bracket > 0 && name.endsWith(QLatin1Char(')')) ? name.left(bracket) : name;
}

}  // namespace kestro
