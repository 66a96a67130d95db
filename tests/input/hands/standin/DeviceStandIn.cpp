#include "input/hands/standin/DeviceStandIn.h"

#include "input/hands/HandDevicePlugin.h"

#include <Leap.h>

#include <chrono>
#include <condition_variable>
#include <functional>
#include <mutex>
#include <optional>
#include <thread>

namespace {

std::mutex lock;
Leap::Listener *listener = nullptr;
HandFrame newest;
std::optional<DepthFrame> depthFrame;
std::condition_variable depthFrameTaken;
bool cameraIsLost = false;

void callBack(const std::function<void(Leap::Listener &)> &call)
{
    std::thread([&call] {
        const std::lock_guard<std::mutex> guard(lock);
        if (listener)
            call(*listener);
    }).join();
}

class StandInCamera final : public DepthCamera
{
public:
    bool driversFound() override { return true; }
    bool createManager() override { return true; }
    bool enableHandModule() override { return true; }
    bool enableGestures(const QStringList &names) override { return names.size() == 8; }
    std::array<int, 4> version() override { return {7, 0, 25, 4}; }
    Acquired acquire(DepthFrame *frame) override
    {
        const std::lock_guard<std::mutex> guard(lock);
        if (cameraIsLost)
            return Acquired::Lost;
        if (!depthFrame)
            return Acquired::Nothing;
        *frame = *depthFrame;
        depthFrame.reset();
        depthFrameTaken.notify_all();
        return Acquired::Frame;
    }
};

} // namespace

namespace Leap {

bool Controller::addListener(Listener &added)
{
    const std::lock_guard<std::mutex> guard(lock);
    listener = &added;
    return true;
}

bool Controller::removeListener(Listener &)
{
    const std::lock_guard<std::mutex> guard(lock);
    listener = nullptr;
    return true;
}

Frame Controller::frame() const
{
    const std::lock_guard<std::mutex> guard(lock);
    return Frame(newest);
}

} // namespace Leap

namespace test::standin {

void plugTracker()
{
    callBack([](Leap::Listener &l) { l.onConnect({}); });
}

void unplugTracker()
{
    callBack([](Leap::Listener &l) { l.onDisconnect({}); });
}

void show(const HandFrame &frame)
{
    {
        const std::lock_guard<std::mutex> guard(lock);
        newest = frame;
    }
    callBack([](Leap::Listener &l) { l.onFrame({}); });
}

void show(const DepthFrame &frame)
{
    std::unique_lock<std::mutex> guard(lock);
    depthFrame = frame;
    depthFrameTaken.wait_for(guard, std::chrono::seconds(10), [] { return !depthFrame; });
}

void loseCamera()
{
    const std::lock_guard<std::mutex> guard(lock);
    cameraIsLost = true;
}

} // namespace test::standin

std::unique_ptr<DepthCamera> makeStandInCamera()
{
    return std::make_unique<StandInCamera>();
}
