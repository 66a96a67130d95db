#include "hmd/OvrLibrary.h"

namespace OvrLibrary {

const char *fileNameFormat()
{
    return "%lslibOVRRT%hs.so.%d";
}

QStringList standardDirectories()
{
    return {QString()};
}

CodeSignature codeSignature(const QString &)
{
    return CodeSignature::NotKnownHere;
}

} // namespace OvrLibrary
