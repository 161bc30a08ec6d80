/* A program that does nothing: whether target programs can be started. */
int main(void) { return 0; }
