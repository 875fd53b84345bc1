#include "VarnelCefView.h"

VarnelCefView::VarnelCefView(QWidget *parent) : QCefView(parent) {}

VarnelCefView::~VarnelCefView() = default;
