// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <gst/gst.h>
#include <memory>
#include <string>

/// \file
/// Shared by all code that uses GStreamer: smart pointers and initialization. Any thread.

/// Initializes GStreamer. The first call takes some milliseconds, or some hundred if the plug-in
/// registry must be built. Does not fail: without plug-ins nothing can be decoded.
void startGStreamer();

struct _GstAdapter;

struct GstUnref {
    void operator()(GstObject *object) const { gst_object_unref(object); }
    void operator()(GstElement *element) const { gst_object_unref(element); }
    void operator()(GstPad *pad) const { gst_object_unref(pad); }
    void operator()(GstBus *bus) const { gst_object_unref(bus); }
    void operator()(GstCaps *caps) const { gst_caps_unref(caps); }
    void operator()(GstSample *sample) const { gst_sample_unref(sample); }
    void operator()(GstBuffer *buffer) const { gst_buffer_unref(buffer); }
    void operator()(_GstAdapter *adapter) const { g_object_unref(adapter); }
};
template <class T>
using GstPtr = std::unique_ptr<T, GstUnref>;

/// The text of an error or warning message, in UTF-8, without its debug information.
std::string gstMessageText(GstMessage *message);
