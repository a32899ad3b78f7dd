#include "embedded/EmbeddedDesktop.h"

#include "embedded/View.h"

#include <QPixmap>

namespace embedded {

EmbeddedDesktop::EmbeddedDesktop(const Scenario& scenario, const std::string& root)
    : session_(root, scenario)
    , world_(scenario, session_.preferenceFile(dockIdentifier), notices_, icons_)
    , displays_(world_)
    , processes_(world_, calls_)
    , applications_(world_, icons_, calls_)
    , windows_(world_, calls_)
    , badges_(world_, calls_)
    , accessibility_(world_, calls_)
    , keyboard_(world_, calls_)
    , surfaces_(world_)
    , capture_(world_, calls_)
    , tools_(world_, session_, calls_)
{
    notices_.forget();
    notices_.onProcess = [this](host::ProcessEvent event, const Notices::Record& process) {
        if (processes_.onEvent)
            processes_.onEvent(event, process);
    };
    notices_.onWindows = [this] {
        if (windows_.onChange)
            windows_.onChange();
    };
    notices_.onDisplays = [this] {
        if (displays_.onChange)
            displays_.onChange();
    };
}

EmbeddedDesktop::~EmbeddedDesktop() = default;

void EmbeddedDesktop::claimSession()
{
    lock_.emplace(session_.folder());
    if (const auto other = lock_->other())
        world_.launchOwnProgram(*other);
}

void EmbeddedDesktop::show()
{
    if (!view_) {
        view_ = std::make_unique<View>(*this);
        view_->onClosed = [this] {
            if (onLost)
                onLost("the desktop's window was closed");
        };
        notices_.onScene = [this] { view_->sceneChanged(); };
    }
    view_->show();
}

bool EmbeddedDesktop::savePicture(const std::string& path)
{
    show();
    return view_->grab().save(QString::fromStdString(path));
}

}
