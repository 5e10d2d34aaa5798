define(`small', `1')dnl
