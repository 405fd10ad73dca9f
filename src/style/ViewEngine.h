#pragma once

#include "platform/Appearance.h"

#include <QQmlEngine>

#include <memory>

namespace kelvo {

/// What all views run on. Costs nothing until the first of them is needed.
class ViewEngine
{
public:
    /// The views follow `appearance`, which must outlive this.
    explicit ViewEngine(const Appearance &appearance);
    ~ViewEngine();
    ViewEngine(const ViewEngine &) = delete;
    ViewEngine &operator=(const ViewEngine &) = delete;

    QQmlEngine &get();

private:
    std::unique_ptr<QQmlEngine> engine_;
};

} // namespace kelvo
