#include "analytics/KAnalyticsProvider.h"

KAnalyticsProvider::KAnalyticsProvider(QObject *parent)
    : QObject(parent)
{}

void KAnalyticsProvider::setStore(KAnalyticsDb *db, KAnalyticsFile *file)
{
    m_db = db;
    m_file = file;
}

void KAnalyticsProvider::waitBeforeExit() {}

void KAnalyticsProvider::sendPending() {}

void KAnalyticsProvider::flushDone() {}
