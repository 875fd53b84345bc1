// The terminal must put here: what its view of a page adds to QCefView.
#include "VarnelCefView.h"

VarnelCefView::VarnelCefView(QWidget *parent) : QCefView(parent) {}

VarnelCefView::~VarnelCefView() = default;
