#pragma once

// English descriptions of EXIF tags for people. Free function, any thread.

#include <QString>

/// Of a tag number of the TIFF and EXIF standards, "NA" for one that they do not have.
QString exifTagDescription(int tag);
