#pragma once

#include "RecordingView.h"

#include <array>
#include <cstddef>
#include <new>

/// A piece of memory for one view after another: each new view lies at the address of the one before.
class ViewPlace {
public:
    ViewPlace() = default;
    ~ViewPlace() { end(); }

    /// A new view there; the one before it ends first.
    RecordingView &renew()
    {
        end();
        m_view = ::new (m_memory.data()) RecordingView;
        return *m_view;
    }

    /// The view there ends.
    void end()
    {
        if (m_view)
            m_view->~RecordingView();
        m_view = nullptr;
    }

private:
    Q_DISABLE_COPY(ViewPlace)

    alignas(RecordingView) std::array<std::byte, sizeof(RecordingView)> m_memory{};
    RecordingView *m_view = nullptr;
};
