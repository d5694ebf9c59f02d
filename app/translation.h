#ifndef TRANSLATION_H
#define TRANSLATION_H

class QTranslator;

/// Loads the file "VesmoraDriver_<language>.qm" beside the program that suits the system's locale
/// into @p translator and installs it. Without one the program speaks its source texts. Every step
/// goes to the debug log.
void installTranslation(QTranslator &translator);

#endif
