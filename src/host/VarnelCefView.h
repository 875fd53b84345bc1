#pragma once

#include "QCefView.h"

/// The terminal's web view: what page calls come from and replies go to. The host creates and destroys
/// it; the library keeps plain pointers and owns none.
class VARNEL_HOST_API VarnelCefView : public QCefView {
    Q_OBJECT
public:
    explicit VarnelCefView(QWidget *parent = nullptr);
    ~VarnelCefView() override;
};
