#pragma once

class QImage;
class QString;

// Saves a picture of a real window for people to look at (build/…/screens/);
// false when it could not be written.
bool SaveScreenshot(const QImage &image, const QString &name);
