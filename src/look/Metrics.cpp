#include "look/Metrics.h"

#include "settings/Settings.h"

Metrics::Metrics(BarSize size)
    : scale_(::scale(size))
{
}

Metrics Metrics::current()
{
    return Metrics(Settings::barSize());
}
