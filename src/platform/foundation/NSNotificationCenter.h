#pragma once

#include <any>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

struct NSNotification {
    std::string name;
    std::map<std::string, std::any, std::less<>> userInfo;
};

/// Tells those who asked. Observers run on the main thread, in the order in which they were added, before `post`
/// returns. Main thread.
class NSNotificationCenter {
public:
    using Block = std::function<void(const NSNotification&)>;
    /// Names one observer to `removeObserver`.
    using Token = std::shared_ptr<const void>;

    static NSNotificationCenter& defaultCenter();

    NSNotificationCenter();
    ~NSNotificationCenter();
    NSNotificationCenter(const NSNotificationCenter&) = delete;
    NSNotificationCenter& operator=(const NSNotificationCenter&) = delete;

    [[nodiscard]] Token addObserver(std::string name, Block block);
    /// An observer removed while a notification is being posted isn't called any more.
    void removeObserver(const Token& token);
    void post(std::string_view name) { post(NSNotification { std::string(name), {} }); }
    void post(const NSNotification& notification);

private:
    struct Observer;
    std::vector<std::shared_ptr<Observer>> observers_;
};
