// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "tests/support/Ear.h"

#include <algorithm>
#include <cmath>
#include <gst/app/gstappsink.h>
#include <gst/app/gstappsrc.h>
#include <gst/gst.h>

namespace ear {

namespace {

constexpr double Pi = 3.14159265358979;
constexpr double Tolerance = 0.01;
constexpr std::size_t Window = Sound::Rate / 10;

/// The energy of a tone with that frequency (Goertzel).
double energy(const float *samples, std::size_t count, double frequency)
{
    const double turn = 2 * std::cos(2 * Pi * frequency / Sound::Rate);
    double last = 0;
    double beforeLast = 0;
    for (std::size_t i = 0; i < count; ++i) {
        const double now = static_cast<double>(samples[i]) + turn * last - beforeLast;
        beforeLast = last;
        last = now;
    }
    return last * last + beforeLast * beforeLast - turn * last * beforeLast;
}

double loudest(const float *samples, std::size_t count)
{
    double best = 0;
    double frequency = 0;
    for (double each = 200; each < 4500; each += 3) {
        const double found = energy(samples, count, each);
        if (found > best) {
            best = found;
            frequency = each;
        }
    }
    return frequency;
}

bool alike(double a, double b)
{
    return std::abs(a - b) < Tolerance * b;
}

void append(Sound &sound, GstSample *sample)
{
    GstMapInfo map;
    GstBuffer *buffer = gst_sample_get_buffer(sample);
    if (gst_buffer_map(buffer, &map, GST_MAP_READ)) {
        const auto *values = reinterpret_cast<const float *>(map.data);
        sound.samples.insert(sound.samples.end(), values, values + map.size / sizeof(float));
        gst_buffer_unmap(buffer, &map);
    }
    gst_sample_unref(sample);
}

} // namespace

double Sound::loudness() const
{
    double sum = 0;
    for (const float each : samples)
        sum += static_cast<double>(each) * static_cast<double>(each);
    return samples.empty() ? 0 : std::sqrt(sum / static_cast<double>(samples.size()));
}

double Sound::share(std::size_t first, std::size_t count, double frequency) const
{
    double whole = 0;
    for (std::size_t i = first; i < first + count; ++i)
        whole += static_cast<double>(samples[i]) * static_cast<double>(samples[i]);
    return whole == 0
        ? 0
        : energy(&samples[first], count, frequency) / whole / static_cast<double>(count) * 2;
}

std::vector<double> Sound::notes() const
{
    std::vector<double> found;
    double current = 0;
    int length = 0;
    for (std::size_t at = 0; at + Window <= samples.size(); at += Window) {
        const double frequency = loudest(&samples[at], Window);
        length = current > 0 && alike(frequency, current) ? length + 1 : 1;
        current = frequency;
        if (length == 3)
            found.push_back(current);
    }
    return found;
}

Sound decoded(const std::string &bytes)
{
    Sound sound;
    sound.error = bytes.empty() ? "there is nothing" : "";
    if (bytes.empty())
        return sound;
    gst_init(nullptr, nullptr);
    GstElement *pipeline = gst_parse_launch(
        "appsrc name=in ! decodebin ! audioconvert ! audioresample ! "
        "audio/x-raw,format=F32LE,channels=1,rate=12000 ! appsink name=out sync=false",
        nullptr);
    GstElement *in = gst_bin_get_by_name(GST_BIN(pipeline), "in");
    GstElement *out = gst_bin_get_by_name(GST_BIN(pipeline), "out");
    gst_element_set_state(pipeline, GST_STATE_PLAYING);
    gst_app_src_push_buffer(GST_APP_SRC(in), gst_buffer_new_memdup(bytes.data(), bytes.size()));
    gst_app_src_end_of_stream(GST_APP_SRC(in));

    GstBus *bus = gst_element_get_bus(pipeline);
    const gint64 until = g_get_monotonic_time() + 10 * G_USEC_PER_SEC;
    while (g_get_monotonic_time() < until && !gst_app_sink_is_eos(GST_APP_SINK(out))) {
        if (GstSample *sample = gst_app_sink_try_pull_sample(GST_APP_SINK(out), 20 * GST_MSECOND))
            append(sound, sample);
        if (GstMessage *message = gst_bus_pop_filtered(bus, GST_MESSAGE_ERROR)) {
            GError *error = nullptr;
            gst_message_parse_error(message, &error, nullptr);
            sound.error = error->message;
            g_error_free(error);
            gst_message_unref(message);
            break;
        }
    }
    gst_element_set_state(pipeline, GST_STATE_NULL);
    gst_object_unref(bus);
    gst_object_unref(in);
    gst_object_unref(out);
    gst_object_unref(pipeline);
    return sound;
}

bool isPartOf(
    const std::vector<double> &heard, const std::vector<double> &melody, std::size_t least)
{
    if (heard.size() < least)
        return false;
    for (std::size_t start = 0; start < melody.size(); ++start) {
        bool all = true;
        for (std::size_t i = 0; i < heard.size(); ++i)
            all = all && alike(heard[i], melody[(start + i) % melody.size()]);
        if (all)
            return true;
    }
    return false;
}

} // namespace ear
