// A stand-in for the Oculus runtime: exports the entry points that the player calls, with every
// structure laid out by its published offsets and not by the player's own declarations. It is as
// strict as the real one is said to be: wrong arguments fail, and each one is counted as "wrong".
//
//   type 14                kind of headset, 0 for none
//   rate 90                frames per second
//   head X Y Z W ...       orientations, one a frame; the last stays
//   mounted 1, visible 1, quit 0, recenter 0   what the status tells
//   lost N                 the displays of the first N sessions go away after some frames
//   ovr_NAME CODE N        the N-th call fails with CODE, each with N 0
//   input TYPE BUTTONS LX LY RX RY   a controller

#define GL_GLEXT_PROTOTYPES
#include "StandInScript.h"

#include <GL/glext.h>

#include <algorithm>
#include <chrono>
#include <cmath>
#include <set>
#include <thread>

// The runtime's names for what its entry points take: a call through a pointer of another type is
// an error. What they are made of is told here once more, by number.
struct ovrHmdStruct;
struct ovrInitParams;
struct ovrErrorInfo;
struct ovrSessionStatus;
struct ovrInputState;
struct ovrTextureSwapChainDesc;
struct ovrViewScaleDesc;
struct ovrLayerHeader;
struct alignas(8) ovrGraphicsLuid;
struct ovrSizei
{
    std::int32_t width, height;
};
struct ovrFovPort
{
    float at[4];
};
struct alignas(8) ovrHmdDesc
{
    char at[264];
};
struct alignas(8) ovrTrackingState
{
    char at[312];
};
struct ovrEyeRenderDesc
{
    alignas(4) char at[56];
};
enum ovrEyeType : std::int32_t {};
enum ovrTrackingOrigin : std::int32_t {};
enum ovrControllerType : std::uint32_t {};
struct ovrTextureSwapChainData
{
    GLuint textures[3];
    int current, commits;
};

namespace {

using Session = ovrHmdStruct *;
using Chain = ovrTextureSwapChainData;

constexpr int kInvalid = -1005;
constexpr float kEyeFromNose = 0.032F;

std::thread::id caller;
std::set<Chain *> chains;
long session = 0, keptPicture = 0; // session 0 for none, else how many there were
std::size_t tracked = 0, statuses = 0;
float head[7];

int wrong()
{
    ++counts["wrong"];
    return kInvalid;
}

/// The scripted failure of a call, else 0.
int enter(const char *name, Session given = nullptr, Chain *chain = nullptr)
{
    const long call = ++counts[name];
    if (caller != std::this_thread::get_id() ||
        (given && given != reinterpret_cast<Session>(&session)) || (given && session == 0) ||
        (chain && !chains.count(chain)))
        return wrong();
    const Numbers failure = numbers(name, {0, 0});
    return failure[1] == 0 || long(failure[1]) == call ? int(failure[0]) : 0;
}

ovrFovPort frustum(int eye) // up, down, left, right
{
    const Numbers t = tangentsOfEye(eye);
    return {{float(t[2]), float(t[3]), float(t[0]), float(t[1])}};
}

ovrSizei size()
{
    const Numbers pixels = sizeOfEye();
    return {std::int32_t(pixels[0]), std::int32_t(pixels[1])};
}

/// Of an eye's pose in a layer: looks where the head was said to, and stands beside it.
bool isBesideHead(const float *eye)
{
    const double apart = std::hypot(eye[4] - head[4], eye[5] - head[5], eye[6] - head[6]);
    return std::equal(eye, eye + 4, head) && std::abs(apart - double(kEyeFromNose)) < 1e-5;
}

} // namespace

extern "C" {

/// 32 bytes: flags at 0, minor version at 4.
int ovr_Initialize(const ovrInitParams *given)
{
    readScript();
    // A library that stays loaded between two runs counts as a new one does.
    counts = {{"unended", counts["unended"]}};
    caller = std::this_thread::get_id();
    tracked = statuses = 0;
    keptPicture = 0;
    if (const int failure = enter("ovr_Initialize"))
        return failure;
    ++counts["unended"];
    std::uint32_t parameters[2] = {};
    if (given)
        std::memcpy(parameters, given, sizeof parameters);
    return parameters[0] == 4 && parameters[1] >= 10 && parameters[1] <= 16 ? 0 : wrong();
}

void ovr_Shutdown()
{
    enter("ovr_Shutdown");
    if (--counts["unended"] != 0 || session != 0)
        wrong();
    writeCounts();
}

const char *ovr_GetVersionString()
{
    return "stand-in";
}

void ovr_GetLastErrorInfo(ovrErrorInfo *error)
{
    std::strcpy(bytes(error) + 4, "as the script tells");
}

int ovr_Create(Session *created, ovrGraphicsLuid *adapter)
{
    if (const int failure = enter("ovr_Create"))
        return failure;
    session = ++counts["sessions"];
    *created = reinterpret_cast<Session>(&session);
    put(bytes(adapter), std::uint64_t(1));
    return 0;
}

void ovr_Destroy(Session given)
{
    enter("ovr_Destroy", given);
    if (!chains.empty())
        wrong();
    session = 0;
}

ovrHmdDesc ovr_GetHmdDesc(Session given)
{
    enter("ovr_GetHmdDesc", given);
    ovrHmdDesc facts = {};
    put(facts.at, std::int32_t(number("type", 14)));
    for (int eye = 0; eye < 2; ++eye)
        put(facts.at + 184 + 16 * eye, frustum(eye));
    put(facts.at + 256, float(number("rate", 90)));
    return facts;
}

/// 6 bytes: visible, present, mounted, lost, quit, recenter; later versions tell two more.
int ovr_GetSessionStatus(Session given, ovrSessionStatus *status)
{
    readScript();
    if (const int failure = enter("ovr_GetSessionStatus", given))
        return failure;
    constexpr std::size_t kUntilLost = 5;
    const bool lost = session <= number("lost", 0) && ++statuses % kUntilLost == 0;
    const char told[] = {char(number("visible", 1)),
                         1,
                         char(number("mounted", 1)),
                         char(lost),
                         char(number("quit", 0)),
                         char(number("recenter", 0)),
                         127,
                         127};
    std::memcpy(bytes(status), told, sizeof told);
    return 0;
}

int ovr_SetTrackingOriginType(Session given, ovrTrackingOrigin origin)
{
    return origin == 0 ? enter("ovr_SetTrackingOriginType", given) : wrong();
}

int ovr_RecenterTrackingOrigin(Session given)
{
    return enter("ovr_RecenterTrackingOrigin", given);
}

/// Orientation at 0, position at 16, time at 80, flags at 88.
ovrTrackingState ovr_GetTrackingState(Session given, double time, std::uint8_t)
{
    enter("ovr_GetTrackingState", given);
    const auto turns = script.find("head");
    const Numbers poses = turns == script.end() ? Numbers{0, 0, 0, 1} : turns->second;
    const std::size_t pose = std::min(tracked++, poses.size() / 4 - 1) * 4;
    for (std::size_t i = 0; i < 7; ++i)
        head[i] = i < 4 ? float(poses[pose + i]) : 0.25F * float(i);
    ovrTrackingState state = {};
    std::memcpy(state.at, head, sizeof head);
    put(state.at + 80, time);
    put(state.at + 88, std::uint32_t(3));
    return state;
}

std::uint32_t ovr_GetConnectedControllerTypes(Session given)
{
    enter("ovr_GetConnectedControllerTypes", given);
    return std::uint32_t(numbers("input", {0, 0, 0, 0, 0, 0})[0]);
}

/// 88 bytes: buttons at 8, two sticks at 32, type at 48; later versions tell 32 bytes more.
int ovr_GetInputState(Session given, ovrControllerType type, ovrInputState *state)
{
    char *const input = bytes(state);
    const Numbers held = numbers("input", {0, 0, 0, 0, 0, 0});
    if (type != ovrControllerType(held[0]))
        return wrong();
    put(input + 8, std::uint32_t(held[1]));
    put(input + 32, ovrFovPort{{float(held[2]), float(held[3]), float(held[4]), float(held[5])}});
    put(input + 48, type);
    std::memset(input + 88, 127, 32);
    return enter("ovr_GetInputState", given);
}

ovrSizei ovr_GetFovTextureSize(Session given, ovrEyeType eye, ovrFovPort fov, float density)
{
    enter("ovr_GetFovTextureSize", given);
    const ovrFovPort usual = frustum(eye);
    if (density != 1 || std::memcmp(&fov, &usual, sizeof fov) != 0)
        wrong();
    return size();
}

/// 56 bytes: eye at 0, tangents at 4, place beside the head at 44.
ovrEyeRenderDesc ovr_GetRenderDesc(Session given, ovrEyeType eye, ovrFovPort fov)
{
    enter("ovr_GetRenderDesc", given);
    ovrEyeRenderDesc facts = {};
    put(facts.at, eye);
    put(facts.at + 4, fov);
    put(facts.at + 44, eye == 0 ? -kEyeFromNose : kEyeFromNose);
    return facts;
}

double ovr_GetPredictedDisplayTime(Session given, std::int64_t frame)
{
    enter("ovr_GetPredictedDisplayTime", given);
    return 100 + 0.01 * double(frame);
}

double ovr_GetTimeInSeconds()
{
    return 100;
}

/// Type, format, layers, width, height, levels, samples, still, misc and bind, 4 bytes each.
int ovr_CreateTextureSwapChainGL(Session given, const ovrTextureSwapChainDesc *asked,
                                 Chain **created)
{
    std::int32_t facts[10];
    std::memcpy(facts, asked, sizeof facts);
    if (const int failure = enter("ovr_CreateTextureSwapChainGL", given))
        return failure;
    const std::int32_t usual[] = {0, 5, 1, size().width, size().height, 1, 1, 0, 0, 0};
    if (!std::equal(usual, usual + 10, facts) || !glGetString(GL_VERSION))
        return wrong();
    auto *chain = *chains.insert(new Chain{}).first;
    glGenTextures(3, chain->textures);
    for (const GLuint texture : chain->textures) {
        glBindTexture(GL_TEXTURE_2D, texture);
        glTexImage2D(GL_TEXTURE_2D, 0, GL_SRGB8_ALPHA8, facts[3], facts[4], 0, GL_RGBA,
                     GL_UNSIGNED_BYTE, nullptr);
    }
    *created = chain;
    return 0;
}

int ovr_GetTextureSwapChainLength(Session given, Chain *chain, int *length)
{
    *length = 3;
    return enter("ovr_GetTextureSwapChainLength", given, chain);
}

int ovr_GetTextureSwapChainCurrentIndex(Session given, Chain *chain, int *index)
{
    *index = chain->current;
    return enter("ovr_GetTextureSwapChainCurrentIndex", given, chain);
}

int ovr_GetTextureSwapChainBufferGL(Session given, Chain *chain, int index, std::uint32_t *texture)
{
    if (index < 0 || index > 2)
        return wrong();
    *texture = chain->textures[index];
    return enter("ovr_GetTextureSwapChainBufferGL", given, chain);
}

int ovr_CommitTextureSwapChain(Session given, Chain *chain)
{
    chain->current = (chain->current + 1) % 3;
    ++chain->commits;
    return enter("ovr_CommitTextureSwapChain", given, chain);
}

void ovr_DestroyTextureSwapChain(Session given, Chain *chain)
{
    enter("ovr_DestroyTextureSwapChain", given, chain);
    if (!glIsTexture(chain->textures[0]))
        wrong(); // no context
    glDeleteTextures(3, chain->textures);
    chains.erase(chain);
    delete chain;
}

/// A layer of 152 bytes: kind at 0, flags at 4, chains at 8, viewports at 24, tangents at 56, poses
/// at 88, time of the sample at 144.
int ovr_SubmitFrame(Session given, std::int64_t, const ovrViewScaleDesc *,
                    const ovrLayerHeader *const *layers, std::uint32_t count)
{
    if (const int failure = enter("ovr_SubmitFrame", given))
        return failure;
    std::uint32_t kind[2];
    Chain *submitted[2];
    std::int32_t viewports[2][4];
    ovrFovPort fov[2];
    float poses[2][7];
    double sampled = 0;
    const char *const layer = bytes(layers[0]);
    std::memcpy(kind, layer, 8);
    std::memcpy(submitted, layer + 8, 16);
    std::memcpy(viewports, layer + 24, 32);
    std::memcpy(fov, layer + 56, 32);
    std::memcpy(poses, layer + 88, 56);
    std::memcpy(&sampled, layer + 144, 8);
    if (count != 1 || kind[0] != 1 || kind[1] != 2 || sampled != 100)
        return wrong();
    for (int eye = 0; eye < 2; ++eye) {
        const std::int32_t whole[] = {0, 0, size().width, size().height};
        const ovrFovPort usual = frustum(eye);
        if (!chains.count(submitted[eye]) || submitted[eye]->commits == 0 ||
            !std::equal(whole, whole + 4, viewports[eye]) ||
            !std::equal(usual.at, usual.at + 4, fov[eye].at) || !isBesideHead(poses[eye]))
            return wrong();
    }
    if (number("visible", 1) == 0)
        return 1000;
    if (number("picture", 0) != keptPicture) {
        keptPicture = number("picture", 0);
        for (int eye = 0; eye < 2; ++eye)
            keepPicture(eye, submitted[eye]->textures[(submitted[eye]->current + 2) % 3]);
        writeCounts();
    }
    std::this_thread::sleep_for(std::chrono::milliseconds(2)); // for the display
    return 0;
}

} // extern "C"
