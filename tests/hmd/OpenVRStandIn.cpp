// A stand-in for the OpenVR client library and the runtime behind it: exports the flat entry points
// and three function tables, filled slot by slot from the public interface's numbering and not from
// the player's own declarations, of which it shares the names alone: a call through a pointer of
// another type is an error. Follows a script and keeps the eyes' pictures.
//
// The script is read anew for each frame; what is missing has the default told here.
//   installed 1            VR_IsRuntimeInstalled
//   initError 0            what VR_InitInternal fails with
//   valid 1                IVRSystem_015 is reported as valid
//   refuse 0               a table that is not to be had: 1 render models, 2 system, 3 compositor
//   eyeE <12 numbers>      eye E to head, row by row
//   pose <12 numbers>      head, row by row; missing: no valid pose
//   wait 0                 what WaitGetPoses fails with
//   connected 1            the headset
//   quit 0                 a quit event waits
//   lose 0                 the session has begun anew this often, each time when the left eye comes
//   controllerD MASK X Y   device D and what is pressed

#include "StandInScript.h"

#include <chrono>
#include <thread>

namespace openvr {

struct Matrix34
{
    float at[12];
};
struct Matrix44
{
    float at[16];
};
struct Event;
struct ControllerState;
struct DevicePose;
struct Texture;

} // namespace openvr

namespace {

using namespace openvr;
using Handle = void *;

long keptPicture = 0, losses = 0;
bool focused = false, quitTold = false;

template <class Matrix>
Matrix matrix(const Numbers &values)
{
    Matrix result = {};
    for (std::size_t i = 0; i < values.size(); ++i)
        result.at[i] = float(values[i]);
    return result;
}
const Numbers kUpright = {1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0};

std::uint32_t token()
{
    return std::uint32_t(1 + losses);
}

Numbers controller(std::uint32_t device)
{
    return numbers("controller" + std::to_string(device), {-1, 0, 0});
}

/// Tables of odd and even tokens: a call through the wrong one is one after the session's end.
template <unsigned parity>
struct Tables
{
    static bool alive()
    {
        const bool mine = token() % 2 == parity;
        counts["wrong"] += !mine;
        return mine;
    }

    static void recommendedSize(std::uint32_t *width, std::uint32_t *height)
    {
        alive();
        const Numbers size = sizeOfEye();
        *width = std::uint32_t(size[0]);
        *height = std::uint32_t(size[1]);
    }
    static Matrix44 projection(std::int32_t eye, float near, float far)
    {
        alive();
        const Numbers t = tangentsOfEye(eye);
        const double w = t[0] + t[1], h = t[2] + t[3], depth = far - near;
        return matrix<Matrix44>({2 / w, 0, (t[1] - t[0]) / w, 0, 0, 2 / h, (t[2] - t[3]) / h, 0, 0,
                                 0, -(far + near) / depth, -2 * far * near / depth, 0, 0, -1, 0});
    }
    static Matrix34 eyeToHead(std::int32_t eye)
    {
        alive();
        return matrix<Matrix34>(numbers("eye" + std::to_string(eye), kUpright));
    }
    static std::int32_t deviceClass(std::uint32_t device)
    {
        alive();
        return device == 0 ? 1 : controller(device)[0] >= 0 ? 2 : 0;
    }
    static bool isConnected(std::uint32_t device)
    {
        alive();
        return device == 0 ? number("connected", 1) != 0 : controller(device)[0] >= 0;
    }
    static bool pollEvent(Event *event, std::uint32_t size)
    {
        alive();
        if (number("quit", 0) == 0 || quitTold || size != 36)
            return false;
        put(bytes(event), std::uint32_t(700));
        return quitTold = true;
    }
    static void acknowledgeQuit() { ++counts["acknowledged"]; }
    /// 60 bytes: packet number at 0, pressed at 4, touched at 12, five axes of two floats at 20.
    static bool controllerState(std::uint32_t device, ControllerState *target, std::uint32_t size)
    {
        char *const state = bytes(target);
        const Numbers pressed = controller(device);
        if (!alive() || pressed[0] < 0 || size != 60)
            return false;
        put(state + 4, std::uint64_t(pressed[0]));
        put(state + 20, float(pressed[1]));
        put(state + 24, float(pressed[2]));
        return true;
    }

    /// 80 bytes a device: matrix at 0, result at 72, validity at 76, connection at 77.
    static std::int32_t waitGetPoses(DevicePose *target, std::uint32_t count, DevicePose *,
                                     std::uint32_t)
    {
        char *const poses = bytes(target);
        std::this_thread::sleep_for(std::chrono::milliseconds(2));
        if (!alive())
            return 1;
        readScript();
        if (number("wait", 0) != 0)
            return std::int32_t(number("wait", 0));
        focused = true;
        ++counts["frames"];
        std::memset(poses, 0, std::size_t(count) * 80);
        put(poses, matrix<Matrix34>(numbers("pose", kUpright)));
        put(poses + 72, std::int32_t(200));
        poses[76] = script.count("pose") != 0;
        poses[77] = number("connected", 1) != 0;
        return 0;
    }
    /// A texture: name at 0, kind at 8, colour space at 12.
    static std::int32_t submit(std::int32_t eye, const Texture *given, const void *bounds,
                               std::int32_t flags)
    {
        const char *const texture = bytes(given);
        std::int32_t kinds[2] = {};
        std::uint64_t name = 0;
        std::memcpy(&name, texture, 8);
        std::memcpy(kinds, texture + 8, 8);
        if (!alive() || !focused)
            return 101;
        if (kinds[0] != 1 || kinds[1] != 1 || bounds || flags || !glIsTexture(GLuint(name)))
            return 102;
        ++counts["submits"];
        if (number("picture", 0) != keptPicture) {
            keepPicture(eye, GLuint(name));
            keptPicture = eye == 1 ? number("picture", 0) : keptPicture;
            writeCounts();
        }
        losses += eye == 0 && number("lose", 0) > losses;
        return 0;
    }

    static Handle table(const std::string &name)
    {
        static Handle renderModels[18] = {}, system[44] = {}, compositor[41] = {};
        system[0] = Handle(&recommendedSize);
        system[1] = Handle(&projection);
        system[4] = Handle(&eyeToHead);
        system[19] = Handle(&deviceClass);
        system[20] = Handle(&isConnected);
        system[28] = Handle(&pollEvent);
        system[32] = Handle(&controllerState);
        system[42] = Handle(&acknowledgeQuit);
        compositor[2] = Handle(&waitGetPoses);
        compositor[5] = Handle(&submit);
        const std::map<std::string, Handle> tables = {{"FnTable:IVRRenderModels_005", renderModels},
                                                      {"FnTable:IVRSystem_015", system},
                                                      {"FnTable:IVRCompositor_020", compositor}};
        const auto found = tables.find(name);
        const long refused = number("refuse", 0);
        if (found == tables.end() || (refused == 1 && found->second == renderModels) ||
            (refused == 2 && found->second == system) ||
            (refused == 3 && found->second == compositor))
            return nullptr;
        return found->second;
    }
};

} // namespace

extern "C" {

bool VR_IsRuntimeInstalled()
{
    readScript();
    return number("installed", 1) != 0;
}

std::uint32_t VR_InitInternal(std::int32_t *error, std::int32_t applicationType)
{
    static std::string lastFolder;
    if (lastFolder != path("")) // another test in the same process
        counts.clear();
    lastFolder = path("");
    ++counts["unended"];
    focused = quitTold = false;
    keptPicture = 0;
    *error = applicationType == 1 ? std::int32_t(number("initError", 0)) : 130;
    return token();
}

void VR_ShutdownInternal()
{
    --counts["unended"];
    writeCounts();
}

std::uint32_t VR_GetInitToken()
{
    return token();
}

bool VR_IsInterfaceVersionValid(const char *version)
{
    return number("valid", 1) != 0 && std::string(version) == "IVRSystem_015";
}

void *VR_GetGenericInterface(const char *version, std::int32_t *error)
{
    Handle table = token() % 2 ? Tables<1>::table(version) : Tables<0>::table(version);
    *error = table ? 0 : 105;
    return table;
}

const char *VR_GetVRInitErrorAsEnglishDescription(std::int32_t error)
{
    static std::string text;
    text = "English of " + std::to_string(error);
    return text.c_str();
}
}
