#pragma once

#include <vips/vips.h>

#include <memory>
#include <string>

#include "methods/interleaved_planes.h"

namespace orv::cli {

struct VipsUnref {
    void operator()(void* object) const { g_object_unref(object); }
};

/// An image of libvips, which is as a rule a recipe for samples that don't exist yet.
using VipsPicture = std::unique_ptr<VipsImage, VipsUnref>;

/// Starts libvips, when it isn't yet: cache off, loaders off that aren't safe on foreign files,
/// its plain loops in place of those for one instruction set, so that bytes are the same
/// everywhere.
///
/// Fails:   with a reason; an empty text means success.
std::string startVips();

/// The first line of what libvips has to say, which is then forgotten.
std::string vipsReason();

/// "is damaged or cut short", with what the JPEG library found.
std::string vipsDamage();

/// Whether a loader complained about a colour profile since the last call.
bool profileComplaint();

/// An image over samples, which must outlive it.
///
/// Fails:   null.
VipsPicture imageOver(const InterleavedSamples& samples);

/// Computes the samples of an image whose sizes and depth `samples` tells.
///
/// Fails:   with a reason; an empty text means success.
std::string copySamples(VipsImage* image, InterleavedSamples& samples);

/// Whether an image has a field of metadata.
bool hasField(VipsImage* image, const char* field);

}  // namespace orv::cli
