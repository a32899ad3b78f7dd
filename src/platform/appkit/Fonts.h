#pragma once

class QFont;
class NSFont;

/// The toolkit's font for one of the program's. For the layer's own use.
const QFont& toolkitFont(const NSFont& font);
