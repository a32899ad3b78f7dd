#pragma once

class QFont;
class NSFont;

/// The toolkit's font for one of the program's, as large as widgets have it or at so many pixels to a point. For the
/// layer's own use.
const QFont& toolkitFont(const NSFont& font);
const QFont& toolkitFont(const NSFont& font, double scale);
