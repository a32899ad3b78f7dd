#include "appkit/RetiredWidget.h"

#include <QAbstractEventDispatcher>
#include <QPointer>
#include <QThread>
#include <QWidget>

#include <utility>
#include <vector>

namespace {

/// A widget may still go with one that it lies in.
std::vector<QPointer<QWidget>>& retired()
{
    static std::vector<QPointer<QWidget>> widgets;
    return widgets;
}

void deleteRetired()
{
    if (QThread::currentThread()->loopLevel() > 1)
        return;
    for (const QPointer<QWidget>& widget : std::exchange(retired(), {}))
        delete widget;
}

}

void RetireWidget::operator()(QWidget* widget) const
{
    static const auto following
        = QObject::connect(QAbstractEventDispatcher::instance(), &QAbstractEventDispatcher::awake, deleteRetired);
    widget->hide();
    retired().emplace_back(widget);
}
