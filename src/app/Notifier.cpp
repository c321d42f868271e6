#include "app/Notifier.h"

Notifier& Notifier::Instance() {
    static Notifier instance;
    return instance;
}
