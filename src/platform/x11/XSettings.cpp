#include "x11/XSettings.h"

#include <optional>

namespace x11 {
namespace {

enum Kind : std::uint8_t { number, text, colour };

constexpr std::size_t colourLength = 8;

/// Takes values off the front of the property.
class Reader {
public:
    explicit Reader(std::string_view bytes)
        : rest_(bytes)
    {
        isBigEndian_ = take(4).starts_with('\1');
    }

    bool hasFailed() const { return hasFailed_; }

    std::string_view take(std::size_t length)
    {
        hasFailed_ |= length > rest_.size();
        const std::string_view taken = hasFailed_ ? std::string_view() : rest_.substr(0, length);
        rest_.remove_prefix(taken.size());
        return taken;
    }

    /// Its fields are filled up to multiples of four bytes.
    std::string_view takePadded(std::size_t length)
    {
        const std::string_view taken = take(length);
        take((4 - length % 4) % 4);
        return taken;
    }

    std::uint32_t unsignedNumber(std::size_t length)
    {
        std::uint32_t value = 0;
        int shift = isBigEndian_ ? static_cast<int>(length - 1) * 8 : 0;
        for (const char byte : take(length)) {
            value |= std::uint32_t(static_cast<unsigned char>(byte)) << shift;
            shift += isBigEndian_ ? -8 : 8;
        }
        return value;
    }

private:
    std::string_view rest_;
    bool isBigEndian_ = false;
    bool hasFailed_ = false;
};

}

std::map<std::string, std::int32_t> readXSettings(std::string_view property)
{
    std::map<std::string, std::int32_t> settings;
    Reader reader(property);
    reader.unsignedNumber(4); // How often it was written.
    for (std::uint32_t left = reader.unsignedNumber(4); left > 0 && !reader.hasFailed(); --left) {
        const std::uint32_t kind = reader.unsignedNumber(1);
        reader.take(1);
        const std::string name(reader.takePadded(reader.unsignedNumber(2)));
        reader.unsignedNumber(4); // When it was last changed.
        std::int32_t value = 0;
        if (kind == Kind::number)
            value = static_cast<std::int32_t>(reader.unsignedNumber(4));
        else if (kind == Kind::text)
            reader.takePadded(reader.unsignedNumber(4));
        else if (kind == Kind::colour)
            reader.take(colourLength);
        else
            break;
        if (kind == Kind::number && !reader.hasFailed())
            settings[name] = value;
    }
    return settings;
}

}
