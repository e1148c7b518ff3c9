// A crate or barrel breaks: splinters, and what it held.
void main()
{
	void self = getlocalvar("self");
	void holds = getentityvar(self, "holds");
	float x = getentityproperty(self, "x");
	float z = getentityproperty(self, "z");
	int n = 1;
	int i;

	clearspawnentry();
	setspawnentry("name", "Splinters");
	setspawnentry("coords", x, z + 1, 0);
	spawn();

	if(isempty(holds)){
		return;
	}
	if(holds == "Button"){
		n = 3;
	}
	for(i = 0; i < n; i++){
		clearspawnentry();
		setspawnentry("name", holds);
		setspawnentry("coords", x + i * 18 - (n - 1) * 9, z + 2, 0);
		spawn();
	}
}
