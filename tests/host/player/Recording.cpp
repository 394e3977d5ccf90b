// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "tests/host/player/Recording.h"

#include "media/GstHandles.h"

#include <QFile>
#include <QTemporaryDir>

QByteArray recordedTone(const char *encoder, int frequency, int seconds, int rate)
{
    startGStreamer();
    const QTemporaryDir folder;
    const QString file = folder.filePath(QStringLiteral("tone"));
    const QString description = QStringLiteral(
        "audiotestsrc freq=%1 volume=0.25 samplesperbuffer=%2 num-buffers=%3 ! "
        "audio/x-raw,rate=%2,channels=2 ! audioconvert ! %4 ! filesink location=%5")
                                    .arg(frequency)
                                    .arg(rate)
                                    .arg(seconds)
                                    .arg(QString::fromLatin1(encoder), file);
    const GstPtr<GstElement> pipeline(gst_parse_launch(description.toUtf8().constData(), nullptr));
    if (!pipeline)
        return {};
    gst_element_set_state(pipeline.get(), GST_STATE_PLAYING);
    const GstPtr<GstBus> bus(gst_element_get_bus(pipeline.get()));
    GstMessage *message = gst_bus_timed_pop_filtered(bus.get(), 30 * GST_SECOND,
        static_cast<GstMessageType>(GST_MESSAGE_EOS | GST_MESSAGE_ERROR));
    const bool ok = message && GST_MESSAGE_TYPE(message) == GST_MESSAGE_EOS;
    if (message)
        gst_message_unref(message);
    gst_element_set_state(pipeline.get(), GST_STATE_NULL);
    QFile recorded(file);
    return ok && recorded.open(QIODevice::ReadOnly) ? recorded.readAll() : QByteArray();
}
