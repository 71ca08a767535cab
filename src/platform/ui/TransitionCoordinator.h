// What a size change hands to the view controllers that it reaches: work to run alongside the
// change and work to run once it is over.
#pragma once

#include "ZQTGlobal.h"

#include <QList>
#include <functional>

namespace ZQTPlatform {

class ZQT_EXPORT TransitionCoordinator
{
public:
    using Block = std::function<void()>;

    // Queues animation (run as the new size is applied) and completion (run on a later turn of the
    // event loop, after the change). Either may be empty. Always accepted.
    bool animateAlongsideTransition(Block animation, Block completion);

    // For the window that drives the change: takes the queued work.
    QList<Block> takeAnimations();
    QList<Block> takeCompletions();

private:
    QList<Block> m_animations;
    QList<Block> m_completions;
};

} // namespace ZQTPlatform
