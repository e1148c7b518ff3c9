#include "data/scripts/absent.h"
void main(){ getglobalvar(); }
