// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "host/sound/SinkHealth.h"

#include <QVector>

namespace {

constexpr const char *Name = "vesk-sink-health";

} // namespace

void postSinkHealth(GstElement *sink, const char *text, const QString &place, const QString &reason)
{
    GstStructure *health = gst_structure_new(Name, "text", G_TYPE_STRING, text ? text : "", "place",
        G_TYPE_STRING, place.toUtf8().constData(), "reason", G_TYPE_STRING,
        reason.toUtf8().constData(), nullptr);
    gst_element_post_message(sink, gst_message_new_element(GST_OBJECT(sink), health));
}

std::optional<TrString> sinkHealth(GstMessage *message)
{
    if (GST_MESSAGE_TYPE(message) != GST_MESSAGE_ELEMENT || !gst_message_has_name(message, Name))
        return {};
    const GstStructure *health = gst_message_get_structure(message);
    const char *text = gst_structure_get_string(health, "text");
    if (!*text)
        return TrString();
    const auto value = [health](const char *field) {
        return TrArg(QString::fromUtf8(gst_structure_get_string(health, field)));
    };
    QVector<TrArg> values {value("place")};
    if (const TrArg reason = value("reason"); !reason.value.isEmpty())
        values.append(reason);
    return TrString(QStringLiteral("Player"), QString::fromUtf8(text), QString(), -1, values);
}
