#include "input/leap/LeapListener.h"

void LeapListener::onConnect(const Leap::Controller &)
{
    emit leapConnected(true);
}

void LeapListener::onDisconnect(const Leap::Controller &)
{
    m_told = false;
    emit leapConnected(false);
}

void LeapListener::onFrame(const Leap::Controller &)
{
    if (!m_told.exchange(true))
        emit frameArrive();
}
