// The look: Fusion in dark, and the texts that Qt itself shows in German.
// Threads  [main], once after QApplication.
#pragma once

class QApplication;

void LQtApplyTheme(QApplication& application);
void LQtApplyGermanTexts(QApplication& application);
