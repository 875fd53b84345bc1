#pragma once

#include "QCefView.h"

/// The terminal's web view: what page calls come from and replies go to. The host creates and destroys
/// it; the library keeps plain pointers and owns none.
class VARNEL_HOST_API VarnelCefView : public QCefView {
    Q_OBJECT
public:
    /// Made by the host, on the user-interface thread, with what shows it as parent.
    explicit VarnelCefView(QWidget *parent = nullptr);
    ~VarnelCefView() override;
};
