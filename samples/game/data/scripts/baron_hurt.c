// takedamagescript: now and then he lets off steam where he was hit. The cloud
// stays at his side: bound to him, it goes where he is thrown.
void main()
{
	void self = getlocalvar("self");
	void steam;
	if(getlocalvar("damage") < 10){
		return;
	}
	clearspawnentry();
	setspawnentry("name", "Cloud");
	steam = spawn();
	bindentity(steam, self, 10, 1, 60, 0, 0);
}
