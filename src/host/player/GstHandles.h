#pragma once

#include <QString>

#include <gst/gst.h>
#include <memory>

/// \file
/// What the player's two pipelines share: handles that let go by themselves, and the start of the
/// library. Any thread.

/// Starts GStreamer; the first call takes some milliseconds, or some hundred when the list of
/// plug-ins must be made. Throws nothing: without the library's plug-ins nothing can be decoded.
void startGStreamer();

struct GstUnref {
    void operator()(GstObject *object) const { gst_object_unref(object); }
    void operator()(GstElement *element) const { gst_object_unref(element); }
    void operator()(GstPad *pad) const { gst_object_unref(pad); }
    void operator()(GstBus *bus) const { gst_object_unref(bus); }
    void operator()(GstCaps *caps) const { gst_caps_unref(caps); }
    void operator()(GstSample *sample) const { gst_sample_unref(sample); }
};
template <class T>
using GstPtr = std::unique_ptr<T, GstUnref>;

/// What an error message on a bus says, without the debugging part.
QString gstErrorText(GstMessage *message);
