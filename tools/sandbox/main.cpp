// norvane-sandbox: a local Norvane-compatible service. Its service arrives with the next change.
int main() { return 0; }
