#pragma once

#include "overview/months.h"

#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QRegularExpression>

#include <string>
#include <vector>

namespace mact {

/// Six shops with figures worked out by exact arithmetic, independently of this program.
inline QJsonArray SixShops() {
    QFile file(QStringLiteral(MACT_SOURCE_FOLDER "/tests/data/overview/shops.json"));
    if (!file.open(QIODevice::ReadOnly)) qFatal("The shops cannot be read");
    return QJsonDocument::fromJson(file.readAll()).array();
}

inline QJsonValue In(const QJsonObject& object, const char* key) {
    return object.value(QLatin1String(key));
}

inline std::vector<std::string> Texts(const QJsonValue& array) {
    std::vector<std::string> texts;
    for (const auto& text : array.toArray())
        texts.push_back(text.toString().toStdString());
    return texts;
}

inline MonthNumber MonthIn(const QJsonObject& object, const char* key) {
    const auto month = MonthOfPeriod(In(object, key).toString().toStdString());
    if (!month) qFatal("The shops have no month \"%s\"", key);
    return *month;
}

inline std::string Exact(const QJsonValue& number) {
    return QString::number(number.toDouble(), 'f', 6)
        .remove(QRegularExpression(QStringLiteral("\\.?0+$")))
        .toStdString();
}
inline std::string Short(const QJsonValue& number) {
    return QString::number(number.toDouble(), 'g', 15).toStdString();
}

inline std::string CauseIn(const QJsonObject& figure) {
    const QString cause = In(figure, "cause").toString();
    // A sentence in one of the shops; it is the filler.
    return cause.size() > 20 ? "filler" : cause.toStdString();
}
} // namespace mact
