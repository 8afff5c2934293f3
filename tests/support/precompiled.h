// SPDX-License-Identifier: MIT
/// The headers that most tests include, read by the compiler once for all of them. No file includes this one: each
/// includes what it uses.
#pragma once

#ifdef __cplusplus
#include <QAction>
#include <QApplication>
#include <QDialog>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QPainter>
#include <QPixmap>
#include <QPushButton>
#include <QScrollBar>
#include <QStringList>
#include <QTabBar>
#include <QTest>
#include <QWidget>

#include <algorithm>
#include <functional>
#include <list>
#include <map>
#include <memory>
#include <set>
#include <string>
#include <vector>
#endif
