#include "embedded/Art.h"

#include <QFile>

// Outside of every namespace, as the macro asks.
static void load()
{
    Q_INIT_RESOURCE(embedded);
}

namespace embedded::Art {

std::optional<std::string> read(const std::string& name)
{
    static const bool loaded = (load(), true);
    QFile file(QString::fromStdString(":/embedded/" + name));
    if (!loaded || !file.open(QIODevice::ReadOnly))
        return std::nullopt;
    return file.readAll().toStdString();
}

}
