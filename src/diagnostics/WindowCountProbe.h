#pragma once

#include <string>

/// A diagnostic run: the windows that count as an application's, beside the whole window list.
namespace WindowCountProbe {

/// Of every application whose name contains the fragment, capitals and small letters alike.
void run(const std::string& appNameFragment);

}
