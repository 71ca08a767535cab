#include "platform/ui/TransitionCoordinator.h"

#include <utility>

namespace ZQTPlatform {

bool TransitionCoordinator::animateAlongsideTransition(Block animation, Block completion)
{
    if (animation)
        m_animations.append(std::move(animation));
    if (completion)
        m_completions.append(std::move(completion));
    return true;
}

QList<TransitionCoordinator::Block> TransitionCoordinator::takeAnimations()
{
    return std::exchange(m_animations, {});
}

QList<TransitionCoordinator::Block> TransitionCoordinator::takeCompletions()
{
    return std::exchange(m_completions, {});
}

} // namespace ZQTPlatform
