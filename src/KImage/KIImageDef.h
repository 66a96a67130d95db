#pragma once

// Description of one picture file, as code sees it that draws or keeps pictures and must not know
// the loader. Implemented by ImageDef.

#include <QString>

class KBitmap;
struct ImageMetadata;

class KIImageDef
{
public:
    virtual ~KIImageDef() = default;

    /// Appends the metadata entries to @p text, for people.
    virtual void DumpExif(QString &text) const = 0;

    virtual QString getFilePath() const = 0;
    virtual QString getFileName() const = 0;
    virtual QString getDirectory() const = 0;
    /// Pixels of the working size, at which Lock loads; 0 for an unreadable file.
    virtual int getWidth() const = 0;
    virtual int getHeight() const = 0;
    /// Pixels of the file.
    virtual int getFullWidth() const = 0;
    virtual int getFullHeight() const = 0;
    /// Whether the file could be described.
    virtual bool isValid() const = 0;
    /// Start angles in degrees, 0 unless the file carries some.
    virtual double getYaw() const = 0;
    virtual double getPitch() const = 0;

    virtual const ImageMetadata &getMetadata() const = 0;
    /// Focal length in millimetres for a frame of 36 by 24 mm.
    virtual double getFocal35() const = 0;
    /// Scale of the camera's sensor to that frame.
    virtual double getSensorScale() const = 0;
    virtual QString getLensModel() const = 0;

    /// Loads the pixels at working size as 8-bit RGBA; they stay until as many Unlocks. Throws a
    /// KException, whose message is for the user.
    virtual const KBitmap &Lock() = 0;
    virtual void Unlock() = 0;
    /// The same at full size with the file's own depth.
    virtual const KBitmap &LockFullSize() = 0;
    virtual void UnlockFullSize() = 0;
};
