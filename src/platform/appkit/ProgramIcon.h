#pragma once

class QIcon;

/// The program's own icon, for its windows. For the layer's own use. Main thread.
const QIcon& programIcon();
