#pragma once

#include "freedesktop/LaunchNotifier.h"

#include <gio/gio.h>

#include <memory>

namespace freedesktop {

struct Unref {
    void operator()(void* object) const { g_object_unref(object); }
};

template <class Object>
using Owned = std::unique_ptr<Object, Unref>;

/// What a program is started with: the environment that this program was started with itself, without what it has set
/// in it since, and the announcement of its window for those that ask for one.
Owned<GAppLaunchContext> makeLaunchContext(LaunchNotifier& notifier);

}
