a = array(3); set(a, "k", a); add(a, 1, "x"); delete(a, 0); next(a); key(a); value(a); previous(a);
reset(a); free(a); setindexedvar(1, a); clearindexedvar(); clearlocalvar(); size(a); get(a, "k");
