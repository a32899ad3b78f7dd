#pragma once

class NSColor;
class QColor;

/// The toolkit's colour for one of the program's. For the layer's own use.
QColor toolkitColor(const NSColor& color);
